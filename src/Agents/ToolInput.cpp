#include "Agents/ToolInput.h"

#include "Agents/AgentModels.h"
#include "Support/Text.h"

#include <algorithm>
#include <array>

namespace kippo {

namespace {

/// A list of more words than this says no more on one line.
constexpr std::size_t maxWords = 256;

/// A row of the list shows about a third of this; more would only make the log's lines long, as every tool call is one.
constexpr std::size_t maxDetail = 200;

constexpr std::string_view patchStart = "*** Begin Patch";

/// The first line that is not blank.
std::string_view firstLine(std::string_view text) {
    const auto line = Text::trimmed(text);
    return Text::trimmed(line.substr(0, line.find_first_of("\r\n")));
}

/// The first file that a patch in Codex's format touches.
std::string_view patchedFile(std::string_view patch) {
    constexpr std::string_view marker = " File: ";
    const auto at = patch.find(marker);
    return at == std::string_view::npos ? std::string_view{} : firstLine(patch.substr(at + marker.size()));
}

/// A path is known by its end, so one that is too long keeps that.
std::string_view cut(std::string_view line, bool isPath) {
    if (isPath && Text::isLongerThan(line, maxDetail)) {
        line = Text::lastPathComponent(line);
    }
    return Text::prefix(line, maxDetail);
}

bool isShell(std::string_view word) {
    constexpr std::array<std::string_view, 7> shells{"sh", "bash", "zsh", "dash", "ksh", "fish", "pwsh"};
    return std::ranges::find(shells, Text::lastPathComponent(word)) != shells.end();
}

/// "-c", also joined with others as in "-lc", or PowerShell's.
bool introducesScript(std::string_view option) {
    return option == "-Command" ||
           (option.size() >= 2 && option[0] == '-' && option[1] != '-' && option.ends_with('c'));
}

/// As a person would type it.
void appendWord(std::string& line, std::string_view word) {
    if (!word.empty() && word.find_first_of(" \t\n\r\"'$&|;<>()*?#`\\") == std::string_view::npos) {
        line += word;
        return;
    }
    line += '\'';
    for (const char c : word) {
        if (c == '\'') {
            line += "'\\''";
        } else {
            line += c == '\n' || c == '\r' ? ' ' : c;
        }
    }
    line += '\'';
}

} // namespace

// A command comes before its "description", a pattern or an address before the folder or the question it goes with, and
// a sub-agent's "description" before its long "prompt".
ToolInput::ToolInput()
    : members_{
          {"command", Role::command, {}},    {"cmd", Role::command, {}},        {"file_path", Role::path, {}},
          {"notebook_path", Role::path, {}}, {"absolute_path", Role::path, {}}, {"target_file", Role::path, {}},
          {"pattern", Role::text, {}},       {"query", Role::text, {}},         {"url", Role::text, {}},
          {"path", Role::path, {}},          {"dir_path", Role::path, {}},      {"paths", Role::path, {}},
          {"include", Role::text, {}},       {"description", Role::text, {}},   {"skill", Role::text, {}},
          {"questions", Role::text, {}},     {"question", Role::text, {}},      {"prompt", Role::text, {}},
          {"input", Role::text, {}},         {"patch", Role::text, {}},
      } {}

ToolInput::Member* ToolInput::find(std::string_view name) {
    const auto member = std::ranges::find(members_, name, &Member::name);
    return member == members_.end() ? nullptr : &*member;
}

void ToolInput::begin(Json::Path path) {
    if (path.empty()) {
        for (auto& member : members_) {
            member.words.clear();
        }
    } else if (path.size() == 1) {
        if (auto* member = find(path[0].key)) {
            member->words.clear();
        }
    }
}

void ToolInput::value(Json::Path path, Json::Kind kind, std::string_view text) {
    if (path.empty() || path.size() > 3) {
        return;
    }
    Member* member = find(path[0].key);
    if (member == nullptr) {
        return;
    }
    if (path.size() == 1) {
        member->words.clear();
    }
    const bool isElement = path.size() == 2 && path[1].index >= 0;
    const bool isFirstQuestion = Json::matches(path, {"questions", Json::anyElement, "question"}) && path[1].index == 0;
    if (kind == Json::Kind::string && (path.size() == 1 || isElement || isFirstQuestion) &&
        member->words.size() < maxWords) {
        member->words.push_back(text);
    }
}

std::optional<std::string> AgentActivity::detailFrom(const ToolInput& input) {
    for (const auto& [name, role, words] : input.members()) {
        const auto patch = std::ranges::find_if(words, [](auto word) { return word.starts_with(patchStart); });
        if (patch != words.end()) {
            if (const auto file = patchedFile(*patch); !file.empty()) {
                return std::string{cut(file, true)};
            }
            continue;
        }
        if (words.empty()) {
            continue;
        }
        const std::string line =
            role == ToolInput::Role::command ? shellLine(words) : std::string{firstLine(words.front())};
        if (!line.empty()) {
            return std::string{cut(line, role == ToolInput::Role::path)};
        }
    }
    return std::nullopt;
}

std::string AgentActivity::shellLine(std::span<const std::string_view> words) {
    if (words.size() == 1) {
        return std::string{firstLine(words.front())};
    }
    if (!words.empty() && isShell(words.front())) {
        const auto option = std::ranges::find_if(words, introducesScript);
        if (option != words.end() && option + 1 != words.end()) {
            return std::string{firstLine(*(option + 1))};
        }
    }
    std::string line;
    for (const auto word : words) {
        if (!line.empty()) {
            line += ' ';
        }
        appendWord(line, word);
    }
    return line;
}

} // namespace kippo
