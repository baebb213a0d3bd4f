#pragma once

#include "Agents/AgentModels.h"
#include "Agents/UsageScanner.h"

#include <vector>

namespace kippo::DemoSessions {

/// Sample sessions, as they would be seen at `now`, and what comes with them.

/// A busy afternoon: one needs the person, two work, one is done, one rests.
std::vector<AgentSession> afternoon(Date now);
/// Ten sessions of every kind, with the texts that are hardest to lay out.
std::vector<AgentSession> crowd(Date now);

/// One that edits, one that runs a command, one that waits, one that has finished.
AgentSession working(Date now);
AgentSession running(Date now);
AgentSession waiting(Date now);
/// One that says more than any row or announcement has room for.
AgentSession verbose(Date now);
AgentSession finished(Date now);
/// One with more of everything than an expanded row shows.
AgentSession overflowing(Date now);

/// A week's usage; of today by project.
UsageScanner::Report week();
/// Two development servers and a test browser whose agents have ended.
std::vector<DetachedProcess> leftRunning();
/// What a scan finds in these projects, the largest first.
std::vector<Leftover> leftovers();

} // namespace kippo::DemoSessions
