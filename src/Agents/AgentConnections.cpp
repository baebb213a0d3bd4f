#include "Agents/AgentConnections.h"

#include "Agents/AgentInstructions.h"

#include <utility>

namespace kippo {

AgentConnections::AgentConnections(UserFiles& files, std::string home, std::string executable)
    : home_{files, std::move(home)}, executable_(std::move(executable)) {}

bool AgentConnections::refresh() {
    State read;
    for (const HookAgent agent : allHookAgents) {
        if (HookBridge::isInstalled(home_, agent)) {
            read.connected.insert(agent);
        }
        if (AgentInstructions::isInstalled(home_.files, home_.home, agent)) {
            read.summaryInstructions.insert(agent);
        }
    }
    return std::exchange(state_, read) != read;
}

void AgentConnections::repair() { HookBridge::repairIfNeeded(home_, executable_); }

void AgentConnections::connect(HookAgent agent) {
    if (executable_.empty()) {
        error_ = "Kippo can't find its own program, which the hooks would run. Install Kippo again.";
        return;
    }
    const auto done = HookBridge::install(home_, agent, executable_);
    error_ = done ? std::nullopt : std::optional{done.error().description()};
    refresh();
}

void AgentConnections::disconnect(HookAgent agent) {
    const auto done = HookBridge::uninstall(home_, agent);
    error_ = done ? std::nullopt : std::optional{done.error().description()};
    refresh();
}

void AgentConnections::setSummaryInstructions(HookAgent agent, bool on) {
    const auto done = on ? AgentInstructions::install(home_.files, home_.home, agent)
                         : AgentInstructions::uninstall(home_.files, home_.home, agent);
    error_.reset();
    if (!done) {
        const HookBridge::InstallError error{.value = HookBridge::InstallError::Case::cannotWrite,
                                             .file = std::string{*AgentInstructions::path(agent)},
                                             .reason = done.error().reason};
        error_ = error.description();
    }
    refresh();
}

std::expected<HookBridge::Change, HookBridge::InstallError> AgentConnections::planned(HookAgent agent,
                                                                                      bool connect) const {
    return connect ? HookBridge::plannedInstall(home_, agent, executable_) : HookBridge::plannedUninstall(home_, agent);
}

std::string AgentConnections::setupPrompt(HookAgent agent) const {
    return HookBridge::setupPrompt(home_, agent, executable_);
}

} // namespace kippo
