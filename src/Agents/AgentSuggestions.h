#pragma once

#include "Agents/AgentPreferences.h"
#include "Agents/ProcessScanner.h"

#include <string>
#include <vector>

namespace kippo {

/// Names of programs that run in `snapshot`, are known to be coding agents, and are none that Kippo follows by itself:
/// those the user might want to watch. Without the ones that are watched already or were declined; by name.
std::vector<std::string> agentSuggestions(const ProcessScanner::Snapshot& snapshot,
                                          const AgentPreferences& preferences);

} // namespace kippo
