#pragma once

#include "Agents/AgentModels.h"

#include <string>
#include <vector>

namespace kippo {

/// One step of a setup guide, in plain words.
struct SetupStep {
    std::string title;
    std::string text;
};

/// How a person connects the agent, sees that it works, and undoes it; in order.
std::vector<SetupStep> setupGuide(HookAgent agent);

} // namespace kippo
