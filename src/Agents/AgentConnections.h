#pragma once

#include "Agents/HookInstallation.h"

#include <expected>
#include <optional>
#include <set>
#include <string>

namespace kippo {

/// What Kippo has written into the agents' own files: its hooks, and the block that asks for a summary line. Knows
/// nothing that the files do not say. Owned by the agent store.
class AgentConnections {
public:
    /// `executable` is the program that the hooks run.
    AgentConnections(UserFiles& files, std::string home, std::string executable);

    const std::set<HookAgent>& connected() const { return state_.connected; }
    const std::set<HookAgent>& summaryInstructions() const { return state_.summaryInstructions; }
    /// Why the latest change could not be made, as a sentence; nothing after one that was.
    const std::optional<std::string>& error() const { return error_; }
    void clearError() { error_.reset(); }

    /// Reads the files again; true when they say something new.
    bool refresh();
    /// Makes hooks that run another program run this one.
    void repair();
    void connect(HookAgent agent);
    void disconnect(HookAgent agent);
    void setSummaryInstructions(HookAgent agent, bool on);

    std::expected<HookBridge::Change, HookBridge::InstallError> planned(HookAgent agent, bool connect) const;
    std::string setupPrompt(HookAgent agent) const;

private:
    struct State {
        std::set<HookAgent> connected;
        std::set<HookAgent> summaryInstructions;
        bool operator==(const State&) const = default;
    };

    HookBridge::SettingsHome home_;
    std::string executable_;
    State state_;
    std::optional<std::string> error_;
};

} // namespace kippo
