#include "Agents/HookEdit.h"
#include "Agents/HookInstallation.h"

#include <fmt/format.h>

namespace kippo::HookBridge {

namespace {

std::string_view trustNote(HookAgent agent) {
    return agent == HookAgent::codex
               ? "\n4. Tell me that Codex will ask me to review the new hooks once, at its next start or under /hooks, "
                 "and runs none of them before I have trusted them.\n"
               : "\n";
}

std::string_view versionNote(HookAgent agent) {
    return agent == HookAgent::cursor ? " Add \"version\": 1 at the top level if there is no \"version\" yet." : "";
}

} // namespace

std::string entries(HookAgent agent, std::string_view executable) {
    return HookEdit::installed("{}", agent, hookCommand(agent, executable)).value_or(std::string{});
}

std::string setupPrompt(const SettingsHome& home, HookAgent agent, std::string_view executable) {
    const auto file = home.settingsFile(agent);
    return fmt::format(
        "Please connect {title} to Kippo, the companion that shows me what my coding agents are doing, by adding its "
        "hooks to {file}.\n"
        "\n"
        "1. If the file is missing, create it as an empty JSON object. If it is there, first copy it to {backup}, "
        "unless that copy exists already.\n"
        "2. Merge the entries below into its top-level \"hooks\" object. Append Kippo's entry to each event's list; "
        "keep every existing hook and setting exactly as it is. If an entry whose command contains \"--kippo-hook\" is "
        "already there, replace it instead of adding a second one.{version}\n"
        "3. Make sure the file is still valid JSON, then show me the diff.{trust}"
        "\n"
        "```json\n{entries}\n```\n",
        fmt::arg("title", displayTitle(agentKind(agent))), fmt::arg("file", file),
        fmt::arg("backup", home.backupFile(agent)), fmt::arg("version", versionNote(agent)),
        fmt::arg("trust", trustNote(agent)), fmt::arg("entries", entries(agent, executable)));
}

std::string_view afterConnecting(HookAgent agent) {
    switch (agent) {
    case HookAgent::claude:
        return "Claude Code picks the hooks up by itself, also in sessions that are already open. If one stays silent, "
               "restart it.";
    case HookAgent::codex:
        return "Codex asks you to review new hooks once, at its next start or under /hooks, and runs none of them "
               "before you have trusted them. Sessions that are already open have to be restarted.";
    case HookAgent::cursor:
        return "Cursor picks the hooks up by itself. If nothing shows here after your next prompt, restart it.";
    case HookAgent::gemini:
        return "Sessions of Gemini CLI that are already open report here once they are restarted. Disconnect it before "
               "you remove Kippo: Gemini CLI stops working when a hook's program is missing.";
    }
    return {};
}

} // namespace kippo::HookBridge
