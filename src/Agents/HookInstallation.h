#pragma once

#include "Agents/AgentModels.h"
#include "Support/UserFiles.h"

#include <expected>
#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

/// Kippo's entries in each agent's own hook settings. What is not Kippo's keeps its bytes.
namespace kippo::HookBridge {

/// Whose settings: the user's home folder, and the way to its files.
struct SettingsHome {
    UserFiles& files;
    std::string home;

    /// Absolute.
    std::string settingsFile(HookAgent agent) const;
    /// The copy from before the first install.
    std::string backupFile(HookAgent agent) const { return settingsFile(agent) + ".kippo-backup"; }
};

struct InstallError {
    enum class Case {
        unreadableSettings, ///< no JSON object, or one whose hooks are not where they belong
        cannotRead,
        cannotWrite
    };
    Case value = Case::unreadableSettings;
    std::string file;   ///< relative to the home folder, ".claude/settings.json"
    std::string reason; ///< of `cannotRead` and `cannotWrite`: the system's own words

    /// The sentence for the user.
    std::string description() const;

    bool operator==(const InstallError&) const = default;
};

/// An edit of one settings file, worked out and not yet made.
struct Change {
    std::string file; ///< absolute
    std::string before;
    std::string after;
    bool existed = false; ///< the file is there already

    bool isNeeded() const { return before != after; }
};

/// The command that an agent runs: the executable in single quotes, the hook flag, the agent.
std::string hookCommand(HookAgent agent, std::string_view executable);
/// The events that are hooked, in order.
std::vector<std::string_view> hookedEvents(HookAgent agent);
/// The commands of Kippo's entries in a file, by event; an error when the file is none that Kippo would edit.
std::expected<std::map<std::string, std::vector<std::string>>, InstallError> ourCommands(const SettingsHome& home,
                                                                                         HookAgent agent);
/// Whether every event that is hooked carries exactly one entry of Kippo.
bool isInstalled(const SettingsHome& home, HookAgent agent);

/// What `install` would do; the file is not touched.
std::expected<Change, InstallError> plannedInstall(const SettingsHome& home, HookAgent agent,
                                                   std::string_view executable);
/// What `uninstall` would do.
std::expected<Change, InstallError> plannedUninstall(const SettingsHome& home, HookAgent agent);
/// Adds or replaces Kippo's entries, after a backup that is made once. No write when nothing would change.
std::expected<Change, InstallError> install(const SettingsHome& home, HookAgent agent, std::string_view executable);
/// Removes every entry of Kippo, leaving the rest; the text from before the install where nothing else has changed.
std::expected<Change, InstallError> uninstall(const SettingsHome& home, HookAgent agent);
/// Installs again wherever entries of Kippo carry another command than this executable's: the application was moved.
void repairIfNeeded(const SettingsHome& home, std::string_view executable);
/// The entries as the agent's settings would hold them in a file of their own, pretty-printed.
std::string entries(HookAgent agent, std::string_view executable);
/// The text of "Copy prompt for your AI".
std::string setupPrompt(const SettingsHome& home, HookAgent agent, std::string_view executable);
/// What the person has to know or do once the agent is connected; one or two sentences.
std::string_view afterConnecting(HookAgent agent);

} // namespace kippo::HookBridge
