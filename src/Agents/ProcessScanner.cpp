#include "Agents/ProcessScanner.h"

#include "Agents/CommandLine.h"
#include "Support/Text.h"

#include <algorithm>
#include <array>
#include <initializer_list>
#include <ranges>

namespace kippo::ProcessScanner {

namespace {

/// No parent chain is followed further, so that a cycle or a deep tree cannot stall a refresh.
constexpr int maxSteps = 32;

/// A process that ended a moment ago may still have children that are about to end too.
constexpr double leftBehindAfter = 60.0;

/// What one process is, judged once per snapshot.
struct Role {
    std::optional<AgentKind> session; ///< it is a session of this agent
    bool namesAgent = false;          ///< its command line speaks of an agent, or runs a helper of one
};
using Roles = std::map<Pid, Role>;

bool isWatched(const std::string& name, const std::vector<std::string>& watch) {
    return std::ranges::any_of(watch, [&](const auto& watched) { return Text::lowered(watched) == name; });
}

Role roleOf(std::string_view command, const std::vector<std::string>& watch) {
    const auto kind = classify(command, watch);
    if (kind == AgentKind::custom) {
        return {.session = kind, .namesAgent = true};
    }
    const auto launch = CommandLine::launch(command);
    // A script behind an interpreter's options ("node --no-warnings …/gemini") is found only by looking past them.
    if (!kind && (launch.runner == CommandLine::Runner::none || command.contains(".app/"))) {
        return {};
    }
    Role role{.session = CommandLine::sessionOf(launch), .namesAgent = kind || CommandLine::runsAgent(launch)};
    // The user watches a program that is an interpreter's script, or one whose arguments happen to name an agent.
    if (!CommandLine::runsAgent(launch) && (isWatched(CommandLine::launchedName(command), watch) ||
                                            (kind && isWatched(CommandLine::programName(command), watch)))) {
        role = {.session = AgentKind::custom, .namesAgent = true};
    }
    return role;
}

/// Calls `visit` with each ancestor of `proc` until it returns true; tells whether it did.
template <typename Visit> bool anyAncestor(const ProcInfo& proc, const std::map<Pid, ProcInfo>& procs, Visit visit) {
    Pid pid = proc.ppid;
    for (int step = 0; step < maxSteps; ++step) {
        const auto parent = procs.find(pid);
        if (parent == procs.end() || pid == proc.pid) {
            return false;
        }
        if (visit(parent->second)) {
            return true;
        }
        pid = parent->second.ppid;
    }
    return false;
}

bool hasSessionAbove(const ProcInfo& proc, const Snapshot& snapshot, const Roles& roles) {
    return anyAncestor(proc, snapshot.procs,
                       [&](const ProcInfo& ancestor) { return roles.at(ancestor.pid).session.has_value(); });
}

constexpr std::string_view claudeAppFolder = "/Claude.app/";

bool isUnderClaudeApp(const ProcInfo& proc, const std::map<Pid, ProcInfo>& procs) {
    return proc.command.contains(claudeAppFolder) || anyAncestor(proc, procs, [](const ProcInfo& ancestor) {
               return ancestor.pid != 1 && ancestor.command.contains(claudeAppFolder);
           });
}

bool isClaudeApp(std::string_view command) {
    constexpr std::string_view executable = "/Claude.app/Contents/MacOS/Claude";
    return command.ends_with(executable) || command.contains(std::string{executable} + " ");
}

bool startsWithAny(std::string_view text, std::initializer_list<std::string_view> starts) {
    return std::ranges::any_of(starts, [text](std::string_view start) { return text.starts_with(start); });
}

/// Folders whose programs belong to applications and to the system.
bool isInSystemFolder(std::string_view path) {
    return startsWithAny(path, {"/Applications", "/System", "/Library", "/usr/libexec", "/usr/lib/", "/usr/lib32/",
                                "/usr/lib64/", "/usr/sbin/", "/lib/", "/lib64/", "/sbin/", "/snap/", "/var/lib/snapd/",
                                "/var/lib/flatpak/"});
}

/// A package manager's or server's own script in a system folder ("node /usr/bin/npx …") runs the user's project.
bool runsUserProject(std::string_view script) {
    constexpr std::array<std::string_view, 13> names{"npm",     "npm-cli", "npx",     "npx-cli", "pnpm",
                                                     "pnpx",    "yarn",    "yarnpkg", "vite",    "tsx",
                                                     "ts-node", "uvicorn", "gunicorn"};
    const std::string_view file = Text::lastPathComponent(script);
    return std::ranges::find(names, file.substr(0, file.find('.'))) != names.end();
}

/// An application or a service of the system, which is never shown as left behind.
bool belongsToSystem(std::string_view command) {
    if (isInSystemFolder(command)) {
        return true;
    }
    const auto launch = CommandLine::launch(command);
    using enum CommandLine::Runner;
    if (launch.runner != interpreter && launch.runner != shellOrScripter && launch.runner != packageRunner) {
        return false;
    }
    return (isInSystemFolder(launch.program) || startsWithAny(launch.program, {"/usr/bin/", "/bin/", "/usr/share/"})) &&
           !runsUserProject(launch.program);
}

/// Gives itself to the system from the start and goes on by design: a terminal multiplexer, a supervisor of other
/// programs, the far side of an editor.
bool isDaemon(std::string_view command) {
    constexpr std::array<std::string_view, 7> multiplexers{"tmux",  "tmux:",  "screen",     "zellij",
                                                           "dtach", "abduco", "mosh-server"};
    constexpr std::array<std::string_view, 3> scripts{"supervisord", "circusd", "server-main.js"};
    return std::ranges::find(multiplexers, CommandLine::programName(command)) != multiplexers.end() ||
           std::ranges::find(scripts, Text::lastPathComponent(CommandLine::launch(command).program)) != scripts.end();
}

/// What a command says of the program itself: not the files, folders and addresses that it was given. An editor that
/// was started with "~/src/mcp-server" is no tool server.
std::string ownWords(std::string_view command) {
    constexpr std::array<std::string_view, 4> runners{"java", "dotnet", "docker", "podman"};
    constexpr std::size_t wordsLookedAt = 256;
    if (CommandLine::launch(command).runner != CommandLine::Runner::none ||
        std::ranges::find(runners, CommandLine::programName(command)) != runners.end()) {
        return std::string{command};
    }
    std::string words;
    for (const std::string_view word : CommandLine::firstWords(command, wordsLookedAt)) {
        if (words.empty() || word.starts_with('-')) {
            words.append(word).append(" ");
        }
    }
    return words;
}

/// A development server or tool by what it is, not by what it works on.
bool isToolItself(const ProcInfo& proc) {
    return proc.isDevTool() && (Text::lowered(proc.command).contains("chrome for testing") ||
                                ProcInfo{.command = ownWords(proc.command)}.isDevTool());
}

bool isDetached(const ProcInfo& proc, const Snapshot& snapshot, const Roles& roles) {
    return (proc.adopted || proc.ppid == 1) && !proc.isService && proc.uptime > leftBehindAfter &&
           !roles.at(proc.pid).namesAgent && isToolItself(proc) && !belongsToSystem(proc.command) &&
           !isDaemon(proc.command) && !hasSessionAbove(proc, snapshot, roles);
}

/// Judges every process: roots, those inside the desktop application, and those left behind.
void findAgents(Snapshot& snapshot, const std::vector<Pid>& order, const std::vector<std::string>& watch) {
    Roles roles;
    for (const auto& [pid, proc] : snapshot.procs) {
        roles.emplace(pid, roleOf(proc.command, watch));
        snapshot.claudeAppRunning = snapshot.claudeAppRunning || isClaudeApp(proc.command);
    }
    for (const Pid pid : order) {
        const ProcInfo& proc = snapshot.procs.at(pid);
        if (const auto kind = roles.at(pid).session) {
            if (hasSessionAbove(proc, snapshot, roles)) {
                continue;
            }
            snapshot.agentRoots.emplace_back(pid, *kind);
            if (isUnderClaudeApp(proc, snapshot.procs)) {
                snapshot.desktopRoots.insert(pid);
            }
        } else if (isDetached(proc, snapshot, roles)) {
            snapshot.detached.push_back(proc);
        }
    }
}

/// Asks the lister for the ports and folders of what was found, and of nothing else.
void askDetails(ProcessLister& lister, Snapshot& snapshot) {
    std::vector<Pid> found;
    for (const auto& [pid, kind] : snapshot.agentRoots) {
        found.push_back(pid);
    }
    for (const auto& proc : snapshot.detached) {
        found.push_back(proc.pid);
    }
    if (found.empty()) {
        return;
    }
    std::set<Pid> trees{found.begin(), found.end()};
    for (const Pid pid : found) {
        for (const auto& proc : descendants(pid, snapshot)) {
            trees.insert(proc.pid);
        }
    }
    snapshot.ports = lister.listeningPorts(std::vector<Pid>{trees.begin(), trees.end()});
    snapshot.cwds = lister.workingDirectories(found);
}

} // namespace

Snapshot snapshot(ProcessLister& lister, const std::vector<std::string>& watch) {
    Snapshot result;
    std::vector<Pid> order;
    for (auto& proc : lister.processes()) {
        const Pid pid = proc.pid;
        const Pid parent = proc.ppid;
        if (result.procs.emplace(pid, std::move(proc)).second) {
            order.push_back(pid);
            result.children[parent].push_back(pid);
        }
    }
    findAgents(result, order, watch);
    askDetails(lister, result);
    return result;
}

std::vector<ProcInfo> descendants(Pid pid, const Snapshot& snapshot) {
    std::vector<ProcInfo> found;
    std::set<Pid> seen{pid};
    std::vector<Pid> stack{pid};
    while (!stack.empty()) {
        const Pid next = stack.back();
        stack.pop_back();
        if (const auto proc = snapshot.procs.find(next); next != pid && proc != snapshot.procs.end()) {
            found.push_back(proc->second);
        }
        if (const auto below = snapshot.children.find(next); below != snapshot.children.end()) {
            std::ranges::copy_if(below->second, std::back_inserter(stack),
                                 [&](Pid child) { return seen.insert(child).second; });
        }
    }
    return found;
}

bool terminate(ProcessLister& lister, Pid pid, const Snapshot* snapshot) {
    if (!snapshot) {
        return lister.terminate(pid, 0);
    }
    for (const auto& proc : descendants(pid, *snapshot) | std::views::reverse) {
        lister.terminate(proc.pid, proc.startTicks);
    }
    const auto proc = snapshot->procs.find(pid);
    return lister.terminate(pid, proc == snapshot->procs.end() ? 0 : proc->second.startTicks);
}

bool isSession(std::string_view command) { return roleOf(command, {}).session.has_value(); }

} // namespace kippo::ProcessScanner
