#pragma once

#include "Agents/HookState.h"
#include "Agents/ProcessScanner.h"
#include "Agents/SessionRegistry.h"
#include "Agents/TranscriptWatcher.h"

#include <compare>
#include <map>
#include <set>
#include <string>
#include <vector>

/// Turns what hooks, transcripts, the session registry and the process table say into the list of sessions. The rules
/// are in docs/sessions.md; the names in brackets in the code are theirs.
namespace kippo::SessionMerge {

/// One process for good: pids are used again, start times with them are not.
struct ProcessKey {
    Pid pid = 0;
    std::uint64_t startTicks = 0;
    auto operator<=>(const ProcessKey&) const = default;
};

/// What the witnesses say. All references must outlive the call.
struct Input {
    const std::map<std::string, HookState>& hooks;
    const std::map<std::string, TranscriptWatcher::State>& transcripts;
    const std::vector<RegistryEntry>& registry;
    const ProcessScanner::Snapshot* snapshot = nullptr; ///< nothing before the first scan
    Date snapshotTime;                                  ///< when `snapshot` was taken
    Date now;
    const std::set<std::string>& hiddenKinds;        ///< raw values of AgentKind
    const std::vector<std::string>& hiddenProcesses; ///< friendly names
    const std::map<std::string, Date>& dismissedAt;
    const std::map<std::string, Date>& clearedAt;
};

/// What one merge remembers for the next.
struct Memory {
    std::map<std::string, ProcessKey> matched;
    std::set<std::string> seenWithProcess;
    /// Sessions whose process was started to stay at a terminal, as far as its command line tells.
    std::set<std::string> attended;
    /// Processes whose session has reported its end, and when: they are on their way out.
    std::map<ProcessKey, Date> leaving;
    /// Sessions that no process was found for, with the moment at which they had last been heard of.
    std::map<std::string, Date> foundGone;
    /// Sessions that went on after they were found gone: they run out of this process table's sight.
    std::set<std::string> elsewhere;
    /// When the current turn of a session began; kept while it waits, dropped by the store once it has ended.
    std::map<std::string, Date> workingSince;
    std::set<ProcessKey> busy;
    std::map<ProcessKey, Date> lastBusy;
};

struct Output {
    std::vector<AgentSession> sessions;
    std::vector<DetachedProcess> detached;
    std::set<std::string> gone; ///< the sessions, listed or not, whose process has ended
};

/// Puts a list in its order.
void sort(std::vector<AgentSession>& sessions);

Output merge(const Input& input, Memory& memory);

} // namespace kippo::SessionMerge
