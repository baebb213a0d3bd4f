#pragma once

#include "Support/Time.h"

#include <array>
#include <cstdint>
#include <map>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace kippo {

/// A process id. 32 bits on every platform that Kippo knows.
using Pid = std::int32_t;

/// Every agent that can be shown, in the order in which kinds are listed.
enum class AgentKind { claude, codex, cursor, gemini, opencode, aider, claudeDesktop, custom };

inline constexpr std::array allAgentKinds{AgentKind::claude,        AgentKind::codex,    AgentKind::cursor,
                                          AgentKind::gemini,        AgentKind::opencode, AgentKind::aider,
                                          AgentKind::claudeDesktop, AgentKind::custom};

/// The kind's name in files and settings, such as "claudeDesktop".
std::string_view rawValue(AgentKind kind);
/// The inverse of `rawValue`; nothing for an unknown name.
std::optional<AgentKind> agentKindFromRaw(std::string_view raw);
/// The kind's name for people, such as "Claude Code".
std::string_view displayTitle(AgentKind kind);
/// The colour of the kind's badge, 0xRRGGBB.
std::uint32_t tint(AgentKind kind);
/// Which agent a command line is, if any. `watched` are the program names the user asked to follow; they give `custom`.
std::optional<AgentKind> classify(std::string_view command, const std::vector<std::string>& watched);

/// What a hook event means, whichever agent sent it.
enum class HookMeaning {
    sessionStart,
    sessionEnd,
    promptSubmit,
    toolUse,
    permissionRequest,
    notification,
    stop,
    stopFailure,
    other
};

/// The agents that can report through hooks, in listing order.
enum class HookAgent { claude, codex, cursor, gemini };

inline constexpr std::array allHookAgents{HookAgent::claude, HookAgent::codex, HookAgent::cursor, HookAgent::gemini};

std::string_view rawValue(HookAgent agent);
std::optional<HookAgent> hookAgentFromRaw(std::string_view raw);
/// The agent's hook settings file, relative to the home folder.
std::string_view settingsPath(HookAgent agent);
AgentKind agentKind(HookAgent agent);
/// What the event `name` means for `agent`; names are compared exactly.
HookMeaning meaning(HookAgent agent, std::string_view name);

/// What state a session is in. Two statuses are equal when their cases are and, for `needsYou`, their sentences.
struct AgentStatus {
    enum class Case { needsYou, working, done, idle };

    Case value = Case::idle;
    std::string sentence; ///< what the agent waits for; empty unless `needsYou`

    static AgentStatus needsYou(std::string sentence) { return {Case::needsYou, std::move(sentence)}; }
    static AgentStatus working() { return {Case::working, {}}; }
    static AgentStatus done() { return {Case::done, {}}; }
    static AgentStatus idle() { return {Case::idle, {}}; }

    bool isNeedsYou() const { return value == Case::needsYou; }
    bool isWorking() const { return value == Case::working; }
    bool isDone() const { return value == Case::done; }
    bool isIdle() const { return value == Case::idle; }

    bool operator==(const AgentStatus&) const = default;
};

/// "needsYou", "working", "done" or "idle".
std::string_view rawValue(AgentStatus::Case value);

class ToolInput;

/// What a session is doing at the moment, or did last.
struct AgentActivity {
    enum class Kind { shell, edit, read, search, web, delegate, plan, thinking, tool };

    Kind kind = Kind::tool;
    std::string tool;                  ///< the tool's name as the agent reported it
    std::optional<std::string> detail; ///< its subject: a command line, a path, a pattern, a URL, a description
    bool finished = false;             ///< the call has returned
    Date time;                         ///< when the event was seen

    /// The kind of work that a tool of this name does.
    static Kind kindOf(std::string_view tool);
    /// The subject of a tool call, one line of at most 200 characters; nothing when its input names none. See
    /// ToolInput.
    static std::optional<std::string> detailFrom(const ToolInput& input);
    /// A command given as a list of words, as one line that a person could have typed: what a shell is told to run, or
    /// the words with quotes where they need them.
    static std::string shellLine(std::span<const std::string_view> words);
    /// The tool's name made readable: "mcp__github__search" becomes "mcp:github__search".
    std::string toolName() const;
    /// `detail` made short enough for a row: the last part of a path, the start of a command.
    std::optional<std::string> subject() const;
    /// One sentence, in the present tense until the call has finished.
    std::string text() const;

    bool operator==(const AgentActivity&) const = default;
};

/// One row of the process table.
struct ProcInfo {
    Pid pid = 0;
    Pid ppid = 0;
    std::int64_t rssKB = 0;
    double cpu = 0;    ///< percent of one core
    double uptime = 0; ///< seconds since the process started
    std::string command;
    /// The kernel's start time of the process in clock ticks since boot, which with `pid` names it for good; 0 where
    /// the lister does not tell.
    std::uint64_t startTicks = 0;
    /// Its parent has ended and the system, or the user's session, took it over.
    bool adopted = false;
    /// A service manager runs it as a service, the desktop as an application, or a container as its own, so nobody left
    /// it behind.
    bool isService = false;

    /// The last path component of the command's first word.
    std::string executable() const;
    /// A readable name of at most 28 characters: "next dev" rather than "node /…/next dev".
    std::string friendlyName() const;
    /// A development server or tool, worth showing when it was left running.
    bool isDevTool() const;

    bool operator==(const ProcInfo&) const = default;
};

/// One agent session as shown in the list.
struct AgentSession {
    std::string id; ///< the agent's session id, or "pid-" and the process id when only the process is known
    AgentKind kind = AgentKind::claude;
    std::optional<std::string> cwd;
    AgentStatus status;
    Date lastEvent; ///< when the session was last heard of
    std::optional<Date> workingSince;
    std::optional<Pid> rootPID; ///< the agent's own process, when it runs
    std::int64_t memoryKB = 0;  ///< of the process tree
    double cpu = 0;             ///< percent of one core, of the process tree
    std::vector<int> ports;     ///< TCP ports on which the tree listens, ascending
    std::map<Pid, std::vector<int>> childPorts;
    std::vector<ProcInfo> children;
    std::int64_t tokensToday = 0;
    double costToday = 0;               ///< US dollars at API prices
    std::optional<std::string> summary; ///< the agent's last one-line summary
    std::optional<std::string> prompt;  ///< the user's last request, one line
    std::optional<AgentActivity> activity;
    std::optional<std::string> entrypoint; ///< the agent's own word for how it was started, such as "cli"
    std::optional<std::string> customName; ///< of a `custom` agent

    std::string title() const;
    /// The last component of `cwd`; the title when there is no folder.
    std::string project() const;
    /// One line that says what the session is doing, or what it waits for, or how it ended.
    std::string sentence(bool showingPrompt) const;
    /// A short phrase that places the session in time: "Active 4 min", "Finished 2 min ago".
    std::string timeline(Date now) const;

    bool operator==(const AgentSession&) const = default;
};

/// A process that went on after the agent or terminal that started it had ended.
struct DetachedProcess {
    ProcInfo proc;
    std::optional<std::string> cwd;
    std::vector<int> ports;

    bool operator==(const DetachedProcess&) const = default;
};

/// A folder that can be built again and may be moved to the Trash.
struct Leftover {
    std::string path; ///< absolute
    std::int64_t sizeKB = 0;
    std::string project; ///< the project folder's name

    bool operator==(const Leftover&) const = default;
};

namespace Formatters {
/// 999, "1.0K", "1.0M".
std::string tokens(std::int64_t count);
/// "under a minute", "5 min", "3 hr", "1 day", "2 days". Whatever is not a positive number counts as 0.
std::string friendlyDuration(double seconds);
/// Clock style for elapsed time: "0:07", "12:05", "1:02:03".
std::string duration(double seconds);
/// Resident memory: "840 KB", "212 MB", "1.4 GB".
std::string memory(std::int64_t kilobytes);
/// US dollars: "$0.00", "under $0.01", "$12.40", "$1,204.00".
std::string cost(double dollars);
} // namespace Formatters

} // namespace kippo
