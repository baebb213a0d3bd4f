#pragma once

#include "Agents/AgentModels.h"
#include "Support/UserDefaults.h"

#include <cstddef>
#include <map>
#include <optional>
#include <string>

namespace kippo::Terminal {

/// What the event log holds, for whoever asks whether events arrive.
struct LogFacts {
    std::size_t events = 0;
    std::size_t damaged = 0;               ///< lines that are no event
    std::size_t fromTheFuture = 0;         ///< events dated later than the clock says
    std::map<HookAgent, Date> lastByAgent; ///< never later than the clock says
};

/// Reads the whole log; one that is not there or cannot be read holds nothing.
LogFacts logFacts(const std::string& path, Date now);

/// When each agent was last heard of: what the application noted, and what only the log knows because it does not run.
std::map<HookAgent, Date> lastEvents(const LogFacts& log, const UserDefaults& defaults, Date now);

} // namespace kippo::Terminal
