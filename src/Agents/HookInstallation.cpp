#include "Agents/HookInstallation.h"

#include "Agents/HookEdit.h"

#include <algorithm>

#include <fmt/format.h>

namespace kippo::HookBridge {

namespace {

/// How often an edit starts again because the agent has written its settings meanwhile.
constexpr int attempts = 5;

InstallError error(InstallError::Case value, HookAgent agent, std::string reason = {}) {
    return {value, std::string{settingsPath(agent)}, std::move(reason)};
}

/// The settings file as it is; `after` the same. A file that is not there reads as an empty object.
std::expected<Change, InstallError> current(const SettingsHome& home, HookAgent agent) {
    Change change{.file = home.settingsFile(agent), .before = {}, .after = {}, .existed = false};
    auto text = home.files.read(change.file);
    if (!text) {
        return std::unexpected{error(InstallError::Case::cannotRead, agent, text.error().reason)};
    }
    change.existed = text->has_value();
    change.before = std::move(*text).value_or(std::string{});
    change.after = change.before;
    return change;
}

std::expected<Change, InstallError> planned(Change change, std::optional<std::string> after, HookAgent agent) {
    if (!after) {
        return std::unexpected{error(InstallError::Case::unreadableSettings, agent)};
    }
    change.after = std::move(*after);
    return change;
}

/// Carries out what `plan` says, on the text that is in the file at that moment: agents write their settings too.
template <typename Plan, typename Prepare> std::expected<Change, InstallError>
carriedOut(const SettingsHome& home, HookAgent agent, const Plan& plan, const Prepare& prepare) {
    for (int attempt = 1;; ++attempt) {
        auto change = plan();
        if (!change || !change->isNeeded()) {
            return change;
        }
        std::expected<void, UserFiles::Error> done = prepare(*change);
        if (const auto now = current(home, agent);
            done && now && attempt < attempts && (now->before != change->before || now->existed != change->existed)) {
            continue;
        }
        if (done) {
            done = home.files.write(change->file, change->after);
        }
        if (!done) {
            return std::unexpected{error(InstallError::Case::cannotWrite, agent, done.error().reason)};
        }
        return change;
    }
}

} // namespace

std::string SettingsHome::settingsFile(HookAgent agent) const { return home + "/" + std::string{settingsPath(agent)}; }

std::string InstallError::description() const {
    switch (value) {
    case Case::cannotRead:
        return fmt::format("{} can't be read, so Kippo left it alone: {}.", file, reason);
    case Case::cannotWrite:
        return fmt::format("{} can't be written, so it stays as it was: {}.", file, reason);
    case Case::unreadableSettings:
        break;
    }
    return file + " isn't valid JSON, so Kippo left it alone. Fix it and try again.";
}

std::string hookCommand(HookAgent agent, std::string_view executable) {
    std::string command = "'";
    for (const char c : executable) {
        command += c == '\'' ? std::string{"'\\''"} : std::string(1, c);
    }
    return command + "' --kippo-hook --agent " + std::string{rawValue(agent)};
}

std::vector<std::string_view> hookedEvents(HookAgent agent) {
    switch (agent) {
    case HookAgent::claude:
        return {"SessionStart",      "UserPromptSubmit", "PreToolUse", "PostToolUse", "PostToolUseFailure",
                "PermissionRequest", "Notification",     "Stop",       "StopFailure", "SessionEnd"};
    case HookAgent::codex:
        return {"SessionStart", "UserPromptSubmit", "PreToolUse", "PostToolUse", "PermissionRequest",
                "Stop",         "SessionEnd"};
    case HookAgent::cursor:
        return {
            "sessionStart",      "beforeSubmitPrompt", "postToolUse",       "postToolUseFailure", "afterShellExecution",
            "afterMCPExecution", "afterFileEdit",      "afterAgentThought", "afterAgentResponse", "stop",
            "sessionEnd"};
    case HookAgent::gemini:
        return {"SessionStart", "BeforeAgent", "BeforeTool", "AfterTool", "Notification", "AfterAgent", "SessionEnd"};
    }
    return {};
}

std::expected<std::map<std::string, std::vector<std::string>>, InstallError> ourCommands(const SettingsHome& home,
                                                                                         HookAgent agent) {
    const auto change = current(home, agent);
    if (!change) {
        return std::unexpected{change.error()};
    }
    if (!change->existed) {
        return {};
    }
    auto commands = HookEdit::commands(change->before, agent);
    if (!commands) {
        return std::unexpected{error(InstallError::Case::unreadableSettings, agent)};
    }
    return std::move(*commands);
}

bool isInstalled(const SettingsHome& home, HookAgent agent) {
    const auto commands = ourCommands(home, agent);
    return commands && std::ranges::all_of(hookedEvents(agent), [&commands](std::string_view event) {
               const auto found = commands->find(std::string{event});
               return found != commands->end() && found->second.size() == 1;
           });
}

std::expected<Change, InstallError> plannedInstall(const SettingsHome& home, HookAgent agent,
                                                   std::string_view executable) {
    auto change = current(home, agent);
    if (!change) {
        return change;
    }
    const auto after =
        HookEdit::installed(change->existed ? change->before : "{}\n", agent, hookCommand(agent, executable));
    return planned(std::move(*change), after, agent);
}

std::expected<Change, InstallError> plannedUninstall(const SettingsHome& home, HookAgent agent) {
    auto change = current(home, agent);
    if (!change || !change->existed) {
        return change;
    }
    const auto backup = home.files.read(home.backupFile(agent));
    const auto after = HookEdit::uninstalled(change->before, agent, backup.value_or(std::nullopt));
    return planned(std::move(*change), after, agent);
}

std::expected<Change, InstallError> install(const SettingsHome& home, HookAgent agent, std::string_view executable) {
    return carriedOut(
        home, agent, [&] { return plannedInstall(home, agent, executable); },
        [&](const Change& change) -> std::expected<void, UserFiles::Error> {
            if (!change.existed) {
                return {};
            }
            return home.files.copyOnce(change.file, home.backupFile(agent));
        });
}

std::expected<Change, InstallError> uninstall(const SettingsHome& home, HookAgent agent) {
    return carriedOut(
        home, agent, [&] { return plannedUninstall(home, agent); },
        [](const Change&) { return std::expected<void, UserFiles::Error>{}; });
}

void repairIfNeeded(const SettingsHome& home, std::string_view executable) {
    for (const auto agent : allHookAgents) {
        const auto commands = ourCommands(home, agent);
        const auto wanted = hookCommand(agent, executable);
        const bool isMoved =
            commands && std::ranges::any_of(*commands, [&wanted](const auto& event) {
                return std::ranges::any_of(event.second, [&wanted](const auto& command) { return command != wanted; });
            });
        if (isMoved) {
            static_cast<void>(install(home, agent, executable));
        }
    }
}

} // namespace kippo::HookBridge
