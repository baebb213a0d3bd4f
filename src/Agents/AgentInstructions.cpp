#include "Agents/AgentInstructions.h"

namespace kippo::AgentInstructions {

namespace {

constexpr std::string_view startMarker = "<!-- kippo:start -->";
constexpr std::string_view endMarker = "<!-- kippo:end -->";
/// Of the application's earlier name; removed, never written.
constexpr std::string_view legacyStartMarker = "<!-- varde:start -->";
constexpr std::string_view legacyEndMarker = "<!-- varde:end -->";

/// Without any block between these markers. A start marker that was never ended takes no text of the user's along.
std::string without(std::string text, std::string_view start, std::string_view end) {
    for (;;) {
        const auto first = text.find(start);
        const auto ended = first == std::string::npos ? first : text.find(end, first + start.size());
        if (ended == std::string::npos) {
            return text;
        }
        const auto from = text.rfind(start, ended);
        text = text.substr(0, from) + removingBlock(std::string_view{text}.substr(from), start, end);
    }
}

std::string withoutBlocks(std::string text) {
    return without(without(std::move(text), legacyStartMarker, legacyEndMarker), startMarker, endMarker);
}

std::string withBlock(std::string text) {
    if (!text.empty() && !text.ends_with('\n')) {
        text += '\n';
    }
    text += startMarker;
    text += block;
    text += endMarker;
    return text += '\n';
}

/// Writes what `edit` makes of the file's text, unless that is what it holds.
template <typename Edit>
std::expected<void, UserFiles::Error> change(UserFiles& files, const std::string& path, const Edit& edit) {
    const auto text = files.read(path);
    if (!text) {
        return std::unexpected{text.error()};
    }
    const std::optional<std::string> after = edit(*text);
    if (!after || after == *text) {
        return {};
    }
    return files.write(path, *after);
}

} // namespace

const std::string_view block =
    "\n"
    "## Kippo (notch status)\n"
    "- When you finish a task, end your final message with one line: `Done: <what you did, in under 12 words>`.\n"
    "- If you stop because you need an answer or a decision from me, end with one line: `Needs you: <the question>`.\n";

std::optional<std::string_view> path(HookAgent agent) {
    switch (agent) {
    case HookAgent::claude:
        return ".claude/CLAUDE.md";
    case HookAgent::codex:
        return ".codex/AGENTS.md";
    case HookAgent::gemini:
        return ".gemini/GEMINI.md";
    case HookAgent::cursor:
        break;
    }
    return std::nullopt;
}

std::expected<void, UserFiles::Error> install(UserFiles& files, const std::string& home, HookAgent agent) {
    const auto relative = path(agent);
    if (!relative) {
        return {};
    }
    return change(files, home + "/" + std::string{*relative}, [](const std::optional<std::string>& text) {
        return withBlock(withoutBlocks(text.value_or(std::string{})));
    });
}

std::expected<void, UserFiles::Error> uninstall(UserFiles& files, const std::string& home, HookAgent agent) {
    const auto relative = path(agent);
    if (!relative) {
        return {};
    }
    return change(files, home + "/" + std::string{*relative}, [](const std::optional<std::string>& text) {
        return text ? std::optional{withoutBlocks(*text)} : std::nullopt;
    });
}

bool isInstalled(UserFiles& files, const std::string& home, HookAgent agent) {
    const auto relative = path(agent);
    const auto text = relative ? files.read(home + "/" + std::string{*relative}).value_or(std::nullopt) : std::nullopt;
    return text && removingBlock(*text, startMarker, endMarker) != *text;
}

std::string removingBlock(std::string_view text, std::string_view start, std::string_view end) {
    const auto from = text.find(start);
    const auto to = from == std::string_view::npos ? from : text.find(end, from + start.size());
    if (to == std::string_view::npos) {
        return std::string{text};
    }
    auto rest = text.substr(to + end.size());
    rest.remove_prefix(rest.starts_with('\n') ? 1 : 0);
    return std::string{text.substr(0, from)} + std::string{rest};
}

} // namespace kippo::AgentInstructions
