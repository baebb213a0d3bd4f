#include "Agents/UsageLine.h"

#include "Agents/TranscriptWatcher.h"

#include <string>

namespace kippo {

namespace {

/// What the line says of itself besides the usage.
struct Traits {
    bool isReply = false;
    bool hasUsage = false;
    JsonText timestamp;
};

std::int64_t count(JsonSkim& json) {
    const auto number = json.integer().value_or(0);
    return number >= 0 && number <= UsageLine::mostTokens ? number : 0;
}

bool readTokens(JsonSkim& json, UsageLine& line) {
    line.input = line.output = line.cacheWrite = line.cacheRead = 0;
    return json.object([&](const JsonText& key) {
        if (key == "input_tokens") {
            line.input = count(json);
        } else if (key == "output_tokens") {
            line.output = count(json);
        } else if (key == "cache_creation_input_tokens") {
            line.cacheWrite = count(json);
        } else if (key == "cache_read_input_tokens") {
            line.cacheRead = count(json);
        }
    });
}

/// False when it is no object with a usage object.
bool readMessage(JsonSkim& json, UsageLine& line) {
    bool hasUsage = false;
    line.messageID = line.model = {};
    json.object([&](const JsonText& key) {
        if (key == "id") {
            line.messageID = json.text().value_or(JsonText{});
        } else if (key == "model") {
            line.model = json.text().value_or(JsonText{});
        } else if (key == "usage") {
            hasUsage = readTokens(json, line);
        }
    });
    return hasUsage;
}

/// Takes the text that comes next; false when it is none.
bool takeText(JsonSkim& json, JsonText& into) {
    const auto text = json.text();
    into = text.value_or(JsonText{});
    return text.has_value();
}

bool readLine(std::string_view text, UsageLine& line, Traits& traits) {
    JsonSkim json{text};
    const bool isObject = json.object([&](const JsonText& key) {
        if (key == "type") {
            traits.isReply = json.text().value_or(JsonText{}) == "assistant";
        } else if (key == "message") {
            traits.hasUsage = readMessage(json, line);
        } else if (key == "timestamp") {
            takeText(json, traits.timestamp);
        } else if (key == "sessionId") {
            line.hasSession = takeText(json, line.session);
        } else if (key == "cwd") {
            line.hasCwd = takeText(json, line.cwd);
        } else if (key == "requestId") {
            takeText(json, line.requestID);
        }
    });
    return isObject && json.finished();
}

std::optional<Date> dateOf(const JsonText& text) {
    return text.escaped ? TranscriptWatcher::date(text.decoded()) : TranscriptWatcher::date(text.raw);
}

} // namespace

std::optional<UsageLine> UsageLine::parse(std::string_view text) {
    UsageLine line;
    Traits traits;
    // The client makes up messages itself, under a model of this name.
    if (!readLine(text, line, traits) || !traits.isReply || !traits.hasUsage || line.model == "<synthetic>") {
        return std::nullopt;
    }
    const auto date = dateOf(traits.timestamp);
    if (!date) {
        return std::nullopt;
    }
    line.date = *date;
    return line;
}

} // namespace kippo
