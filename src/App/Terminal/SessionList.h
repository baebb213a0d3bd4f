#pragma once

#include "Agents/AgentModels.h"
#include "App/Terminal/TextTable.h"

#include <string>
#include <vector>

namespace kippo::Terminal {

/// What the terminal commands show: the store's lists at one moment, in its order.
struct SessionList {
    std::vector<AgentSession> sessions;
    std::vector<DetachedProcess> detached;

    bool operator==(const SessionList&) const = default;
};

/// The list for a person: a table of the sessions, one of the processes left running, or a sentence when there is
/// nothing. `now` dates the times.
std::string sessionTable(const SessionList& list, Date now, const Style& style);

/// The first `height` lines of `text`; when there are more, the last one shown says how many.
std::string firstLines(const std::string& text, int height);

/// The list as one JSON object on one line, without line feed. docs/terminal.md describes its keys.
std::string sessionJson(const SessionList& list, Date now);

/// The same object without what moves though nothing happened (CPU, memory, uptimes, moments and phrases that grow
/// older, child processes): two equal texts are no news to whoever follows the list.
std::string newsJson(const SessionList& list);

} // namespace kippo::Terminal
