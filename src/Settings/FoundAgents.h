#pragma once

#include "Agents/AgentModels.h"

#include <string>
#include <string_view>

namespace kippo {

/// Whether the agent is on this machine: its folder of settings lies in the home folder, or its program in one of the
/// folders of `searchPath`, which are parted by colons.
bool isOnMachine(HookAgent agent, const std::string& home, std::string_view searchPath);

} // namespace kippo
