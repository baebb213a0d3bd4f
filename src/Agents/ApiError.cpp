#include "Agents/ApiError.h"

#include "Agents/TranscriptWatcher.h"
#include "Support/JsonSkim.h"
#include "Support/Text.h"

namespace kippo {

std::optional<std::string> apiErrorLine(std::string_view text) {
    // Gemini CLI's frame.
    constexpr std::string_view opening = "[API Error: ";
    if (text.starts_with(opening) && text.ends_with(']')) {
        text = text.substr(opening.size(), text.size() - opening.size() - 1);
    }
    std::optional<JsonText> message;
    JsonSkim json{text};
    json.object([&](const JsonText& key) {
        if (key == "error") {
            json.object([&](const JsonText& inner) { message = inner == "message" ? json.text() : message; });
        }
    });
    const std::string words = message && !message->empty() ? message->decoded() : std::string{text};
    return TranscriptWatcher::oneLine(Text::validUtf8(words));
}

} // namespace kippo
