#include "Agents/CodexDetail.h"

#include "Agents/AgentModels.h"
#include "Agents/TranscriptWatcher.h"
#include "Support/Text.h"

#include <vector>

namespace kippo {

namespace {

/// A command as one line, from a list of words or a string; nothing from anything else.
std::optional<std::string> commandLine(std::string_view value) {
    JsonSkim json{value};
    if (json.peek() == JsonSkim::Kind::string) {
        const auto text = json.text();
        return text ? std::optional{text->decoded()} : std::nullopt;
    }
    std::vector<std::string> words;
    json.array([&] {
        if (const auto word = json.text()) {
            words.push_back(word->decoded());
        }
    });
    const std::vector<std::string_view> views(words.begin(), words.end());
    return words.empty() ? std::nullopt : std::optional{AgentActivity::shellLine(views)};
}

/// The subject of a call from its arguments' object, not yet one line.
std::optional<std::string> subject(std::string_view object, bool isAction = false) {
    std::string_view command, today, input, action;
    JsonSkim json{object};
    json.object([&](const JsonText& key) {
        if (key == "command") {
            command = json.value();
        } else if (key == "cmd") {
            today = json.value();
        } else if (key == "input" && json.peek() == JsonSkim::Kind::string) {
            input = json.value();
        } else if (key == "action" && json.peek() == JsonSkim::Kind::object) {
            action = json.value();
        }
    });
    if (json.failed()) {
        return std::nullopt;
    }
    for (const auto candidate : {command, today, input}) {
        if (auto line = commandLine(candidate)) {
            return line;
        }
    }
    return action.empty() || isAction ? std::nullopt : subject(action, true);
}

/// The first file that a patch changes, or else adds.
std::optional<std::string> patchedFile(std::string_view patch) {
    std::optional<std::string> added;
    for (const auto line : Text::split(patch, '\n')) {
        for (const std::string_view marker : {"*** Update File:", "*** Delete File:"}) {
            if (line.starts_with(marker)) {
                return std::string{line.substr(marker.size())};
            }
        }
        if (constexpr std::string_view marker = "*** Add File:"; !added && line.starts_with(marker)) {
            added = line.substr(marker.size());
        }
    }
    return added;
}

} // namespace

std::optional<std::string> CodexDetail::shown(const std::optional<std::string>& text) {
    return text ? TranscriptWatcher::oneLine(Text::validUtf8(*text)) : std::nullopt;
}

std::optional<std::string> CodexDetail::ofArguments(const JsonText& arguments) {
    const auto text = subject(arguments.decoded());
    const bool isPatch = text && text->starts_with("*** Begin Patch");
    return shown(isPatch ? patchedFile(*text) : text);
}

std::optional<std::string> CodexDetail::ofCommand(const JsonText& input) { return shown(commandLine(input.raw)); }

std::optional<std::string> CodexDetail::ofAction(const JsonText& input) { return shown(subject(input.raw)); }

std::optional<std::string> CodexDetail::ofText(const JsonText& input) { return shown(input.decoded()); }

std::optional<std::string> CodexDetail::ofPatch(const JsonText& patch) { return shown(patchedFile(patch.decoded())); }

std::optional<std::string> CodexDetail::ofChanges(const JsonText& input) {
    std::optional<std::string> path;
    JsonSkim json{input.raw};
    json.object([&](const JsonText& key) { path = path ? path : key.decoded(); });
    return shown(path);
}

std::optional<std::string> CodexDetail::ofQuery(const JsonText& input) {
    std::optional<std::string> query;
    JsonSkim json{input.raw};
    json.object([&](const JsonText& key) {
        if (key == "query") {
            const auto text = json.text();
            query = text ? std::optional{text->decoded()} : std::nullopt;
        }
    });
    return shown(query);
}

} // namespace kippo
