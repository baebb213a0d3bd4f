#pragma once

#include "Agents/AgentModels.h"

#include <map>
#include <optional>
#include <set>
#include <span>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace kippo {

/// The process table, as far as Kippo asks. Abstract because each platform has its own way and tests have none; the
/// real ones are ProcProcessLister (Linux) and CommandProcessLister (ps and lsof, anywhere else).
class ProcessLister {
public:
    virtual ~ProcessLister() = default;
    /// The user's own processes, with or without a terminal, in table order.
    virtual std::vector<ProcInfo> processes() = 0;
    /// TCP ports in the listening state by the process that holds them; each port once per process. Only pids in
    /// `wanted` need an answer.
    virtual std::map<Pid, std::vector<int>> listeningPorts(std::span<const Pid> wanted) = 0;
    /// Working folders; pids whose folder cannot be read are left out.
    virtual std::map<Pid, std::string> workingDirectories(std::span<const Pid> wanted) = 0;
    /// Asks a process to end (SIGTERM). False when the signal could not be sent, and when the pid has passed to another
    /// process than the one that began at `startTicks` (of its row; 0 is any).
    virtual bool terminate(Pid pid, std::uint64_t startTicks) = 0;
};

/// Finds the running agents and the development tools that were left running in one snapshot of the process table.
namespace ProcessScanner {

struct Snapshot {
    std::map<Pid, ProcInfo> procs;
    std::map<Pid, std::vector<Pid>> children; ///< direct children, in table order
    std::map<Pid, std::vector<int>> ports;    ///< of agent roots, detached processes and everything below them only
    std::map<Pid, std::string> cwds;          ///< of agent roots and detached processes
    std::vector<std::pair<Pid, AgentKind>> agentRoots;
    std::vector<ProcInfo> detached;
    std::set<Pid> desktopRoots; ///< agent roots inside the Claude desktop app
    bool claudeAppRunning = false;
};

/// Takes a snapshot. `watch` are the extra program names that count as custom agents. Blocking.
Snapshot snapshot(ProcessLister& lister, const std::vector<std::string>& watch);

/// Every process below `pid`, depth first, the last child first; pids not in the table are skipped.
std::vector<ProcInfo> descendants(Pid pid, const Snapshot& snapshot);

/// Asks `pid` to end (SIGTERM, never more); with a snapshot its descendants first, deepest first, and none that is not
/// the process of the snapshot any more. False when the signal to `pid` failed.
bool terminate(ProcessLister& lister, Pid pid, const Snapshot* snapshot);

/// Whether a command runs a session of an agent: the agent's own program, or its script or package under an interpreter
/// or package runner. Not a server, daemon or set-up command of the agent, and not a multiplexer, shell or editor whose
/// arguments name an agent. Programs that the user watches are not known here.
bool isSession(std::string_view command);

/// Elapsed time as `ps` prints it, [[days-]hours:]minutes:seconds, to seconds.
double parseElapsed(std::string_view text);
/// Output of `ps -x -o pid=,ppid=,rss=,%cpu=,etime=,command=`.
std::vector<ProcInfo> parsePs(std::string_view output);
/// Output of `lsof -nP -iTCP -sTCP:LISTEN -Fpn`.
std::map<Pid, std::vector<int>> parseListeners(std::string_view output);
/// Output of `lsof -a -d cwd -Fn -p …`.
std::map<Pid, std::string> parseWorkingDirectories(std::string_view output);

} // namespace ProcessScanner

} // namespace kippo
