#include "Agents/AgentModels.h"

#include <algorithm>

namespace kippo {

namespace {

struct KindRow {
    AgentKind kind;
    std::string_view raw;
    std::string_view title;
    std::uint32_t tint;
};

// Tints are told apart at the size of a badge on black, also by people who see red and green alike.
constexpr std::array kinds{
    KindRow{AgentKind::claude, "claude", "Claude Code", 0xD97757},
    KindRow{AgentKind::codex, "codex", "Codex", 0x74C7A5},
    KindRow{AgentKind::cursor, "cursor", "Cursor Agent", 0xB8BCC8},
    KindRow{AgentKind::gemini, "gemini", "Gemini CLI", 0x6C9BF5},
    KindRow{AgentKind::opencode, "opencode", "opencode", 0xE8C468},
    KindRow{AgentKind::aider, "aider", "Aider", 0x8BD450},
    KindRow{AgentKind::claudeDesktop, "claudeDesktop", "Claude", 0xE39A7F},
    KindRow{AgentKind::custom, "custom", "Other agent", 0xA78BFA},
};

const KindRow& row(AgentKind kind) { return kinds[static_cast<std::size_t>(kind)]; }

struct HookRow {
    HookAgent agent;
    std::string_view raw;
    std::string_view settings;
    AgentKind kind;
};

constexpr std::array hooks{
    HookRow{HookAgent::claude, "claude", ".claude/settings.json", AgentKind::claude},
    HookRow{HookAgent::codex, "codex", ".codex/hooks.json", AgentKind::codex},
    HookRow{HookAgent::cursor, "cursor", ".cursor/hooks.json", AgentKind::cursor},
    HookRow{HookAgent::gemini, "gemini", ".gemini/settings.json", AgentKind::gemini},
};

struct MeaningRow {
    std::string_view name;
    std::optional<HookAgent> agent; ///< whose name it is; every agent's when absent
    HookMeaning meaning;
};

constexpr std::array meanings{
    MeaningRow{"SessionStart", {}, HookMeaning::sessionStart},
    MeaningRow{"sessionStart", {}, HookMeaning::sessionStart},
    MeaningRow{"SessionEnd", {}, HookMeaning::sessionEnd},
    MeaningRow{"sessionEnd", {}, HookMeaning::sessionEnd},
    MeaningRow{"UserPromptSubmit", HookAgent::claude, HookMeaning::promptSubmit},
    MeaningRow{"UserPromptSubmit", HookAgent::codex, HookMeaning::promptSubmit},
    MeaningRow{"beforeSubmitPrompt", HookAgent::cursor, HookMeaning::promptSubmit},
    MeaningRow{"BeforeAgent", HookAgent::gemini, HookMeaning::promptSubmit},
    MeaningRow{"PreToolUse", {}, HookMeaning::toolUse},
    MeaningRow{"PostToolUse", {}, HookMeaning::toolUse},
    MeaningRow{"PostToolUseFailure", {}, HookMeaning::toolUse},
    MeaningRow{"BeforeTool", HookAgent::gemini, HookMeaning::toolUse},
    MeaningRow{"AfterTool", HookAgent::gemini, HookMeaning::toolUse},
    MeaningRow{"postToolUse", HookAgent::cursor, HookMeaning::toolUse},
    MeaningRow{"afterShellExecution", HookAgent::cursor, HookMeaning::toolUse},
    MeaningRow{"afterMCPExecution", HookAgent::cursor, HookMeaning::toolUse},
    MeaningRow{"afterFileEdit", HookAgent::cursor, HookMeaning::toolUse},
    MeaningRow{"afterAgentThought", HookAgent::cursor, HookMeaning::toolUse},
    MeaningRow{"PermissionRequest", {}, HookMeaning::permissionRequest},
    MeaningRow{"Notification", {}, HookMeaning::notification},
    MeaningRow{"Stop", {}, HookMeaning::stop},
    MeaningRow{"AfterAgent", HookAgent::gemini, HookMeaning::stop},
    MeaningRow{"stop", HookAgent::cursor, HookMeaning::stop},
    MeaningRow{"StopFailure", {}, HookMeaning::stopFailure},
};

} // namespace

std::string_view rawValue(AgentKind kind) { return row(kind).raw; }
std::string_view displayTitle(AgentKind kind) { return row(kind).title; }
std::uint32_t tint(AgentKind kind) { return row(kind).tint; }

std::optional<AgentKind> agentKindFromRaw(std::string_view raw) {
    const auto* found = std::ranges::find(kinds, raw, &KindRow::raw);
    return found == kinds.end() ? std::nullopt : std::optional{found->kind};
}

std::string_view rawValue(HookAgent agent) { return hooks[static_cast<std::size_t>(agent)].raw; }
std::string_view settingsPath(HookAgent agent) { return hooks[static_cast<std::size_t>(agent)].settings; }
AgentKind agentKind(HookAgent agent) { return hooks[static_cast<std::size_t>(agent)].kind; }

std::optional<HookAgent> hookAgentFromRaw(std::string_view raw) {
    const auto* found = std::ranges::find(hooks, raw, &HookRow::raw);
    return found == hooks.end() ? std::nullopt : std::optional{found->agent};
}

HookMeaning meaning(HookAgent agent, std::string_view name) {
    const auto* found = std::ranges::find_if(
        meanings, [&](const MeaningRow& row) { return row.name == name && row.agent.value_or(agent) == agent; });
    return found == meanings.end() ? HookMeaning::other : found->meaning;
}

} // namespace kippo
