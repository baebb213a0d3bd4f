#include "Agents/SessionMerge.h"

#include "Agents/CommandLine.h"
#include "Agents/SessionFacts.h"
#include "Support/Text.h"

#include <algorithm>
#include <fmt/format.h>
#include <tuple>

namespace kippo::SessionMerge {

namespace {

using Presence = Facts::Presence;

/// From this much CPU on an agent of which nothing else is known counts as busy, in percent of one core.
constexpr double busyFrom = 10;
/// Below this it no longer does; between the two it stays what it was.
constexpr double busyUntil = 4;

/// A process that still runs this long after its session ended is no longer on its way out.
constexpr Seconds leavingTakes{10};
constexpr Seconds endedStays{300};
constexpr Seconds finishedStays{1800};
constexpr Seconds questionStays{7200};

/// Adds what the process and everything below it cost.
void addProcess(AgentSession& session, Pid pid, const ProcessScanner::Snapshot& snapshot) {
    const ProcInfo& root = snapshot.procs.at(pid);
    session.rootPID = pid;
    session.memoryKB = root.rssKB;
    session.cpu = root.cpu;
    session.children = ProcessScanner::descendants(pid, snapshot);
    std::ranges::sort(session.children, {}, &ProcInfo::pid);
    const auto addPorts = [&](Pid owner) {
        if (const auto found = snapshot.ports.find(owner); found != snapshot.ports.end()) {
            session.ports.insert(session.ports.end(), found->second.begin(), found->second.end());
            if (owner != pid) {
                session.childPorts[owner] = found->second;
            }
        }
    };
    addPorts(pid);
    for (const ProcInfo& child : session.children) {
        session.memoryKB += child.rssKB;
        session.cpu += child.cpu;
        addPorts(child.pid);
    }
    std::ranges::sort(session.ports);
    session.ports.erase(std::ranges::unique(session.ports).begin(), session.ports.end());
}

std::optional<std::string> folder(const Facts& facts, const Input& input) {
    // Agents move about while they work; where the process was started is what the user calls the project.
    if (facts.registry && facts.registry->cwd) {
        return facts.registry->cwd;
    }
    if (facts.pid) {
        if (const auto found = input.snapshot->cwds.find(*facts.pid); found != input.snapshot->cwds.end()) {
            return found->second;
        }
    }
    if (facts.hook && facts.hook->firstCwd) {
        return facts.hook->firstCwd;
    }
    return facts.transcript ? facts.transcript->cwd : std::nullopt;
}

/// Prompt, activity and summary, from whoever told of them last.
void addWords(AgentSession& session, const Facts& facts) {
    const HookState* hook = facts.hook;
    const auto* transcript = facts.transcript;
    if (transcript) {
        session.prompt = transcript->prompt;
        session.activity = transcript->activity;
        session.summary = transcript->summary;
        session.entrypoint = transcript->entrypoint;
    }
    if (!session.entrypoint && facts.registry) {
        session.entrypoint = facts.registry->entrypoint;
    }
    if (!hook) {
        return;
    }
    const bool transcriptIsAhead = transcript && transcript->phaseSince > hook->time + Seconds{5.0};
    if (hook->prompt && !transcriptIsAhead) {
        session.prompt = hook->prompt;
    }
    if (hook->promptTime && (!session.activity || session.activity->time < *hook->promptTime)) {
        session.activity.reset();
    }
    if (hook->activity && (!session.activity || hook->activity->time >= session.activity->time)) {
        session.activity = hook->activity;
    }
    // The hook's copy of the reply is cut short; the transcript's is whole once it has caught up.
    const bool transcriptHasReply =
        transcript && transcript->summary &&
        transcript->phaseSince + Seconds{0.25} >= hook->promptTime.value_or(hook->firstHeard);
    if (hook->summary && !transcriptHasReply) {
        session.summary = hook->summary;
    }
}

void keepTurn(AgentSession& session, const Facts& facts, Memory& memory) {
    if (!session.status.isWorking()) {
        return;
    }
    const auto [entry, isNew] = memory.workingSince.try_emplace(session.id, session.lastEvent);
    if (facts.hook && facts.hook->promptTime && (isNew || *facts.hook->promptTime > entry->second)) {
        entry->second = *facts.hook->promptTime;
    }
    session.workingSince = entry->second;
}

AgentSession row(const Facts& facts, const Input& input, Memory& memory) {
    AgentSession session;
    session.id = facts.id;
    session.kind = facts.kind;
    session.customName = facts.customName;
    session.cwd = folder(facts, input);
    const Verdict verdict = judge(facts, input);
    session.status = verdict.status;
    session.lastEvent = verdict.since;
    if (facts.hook) {
        session.lastEvent = std::max(session.lastEvent, facts.hook->news);
    }
    if (facts.transcript) {
        session.lastEvent = std::max(session.lastEvent, facts.transcript->phaseSince);
    }
    addWords(session, facts);
    if (facts.pid) {
        addProcess(session, *facts.pid, *input.snapshot);
    }
    keepTurn(session, facts, memory);
    return session;
}

bool wasAsked(const Facts& facts) {
    const HookState* hook = facts.hook;
    return facts.transcript ||
           (hook && (hook->promptTime || hook->activity || hook->summary || (hook->status && !hook->status->isIdle())));
}

/// Whether the row has had its time [O1 to O5].
bool hasLeft(const AgentSession& session, const Facts& facts, Date now) {
    if (facts.presence == Presence::there) {
        return false;
    }
    const Seconds quiet = now - session.lastEvent;
    const bool gone = facts.presence == Presence::gone;
    if (gone && !wasAsked(facts)) {
        return true;
    }
    switch (session.status.value) {
    case AgentStatus::Case::needsYou:
        return quiet > questionStays;
    case AgentStatus::Case::working:
        return false;
    case AgentStatus::Case::done:
        return quiet > finishedStays;
    case AgentStatus::Case::idle:
        return quiet > (gone ? endedStays : finishedStays);
    }
    return false;
}

/// What the user calls a watched program: its name, or its script's under an interpreter.
std::string customName(const ProcInfo& root) {
    const auto launch = CommandLine::launch(root.command);
    return launch.runner == CommandLine::Runner::interpreter && !launch.program.empty()
               ? std::string{Text::lastPathComponent(launch.program)}
               : root.executable();
}

/// An agent's process of which nothing else is known [R4, S16].
AgentSession processRow(Pid pid, AgentKind kind, const Input& input, Memory& memory) {
    const ProcInfo& root = input.snapshot->procs.at(pid);
    const ProcessKey key{pid, root.startTicks};
    AgentSession session;
    session.id = fmt::format("pid-{}", pid);
    session.kind = input.snapshot->desktopRoots.contains(pid) ? AgentKind::claudeDesktop : kind;
    if (kind == AgentKind::custom) {
        session.customName = customName(root);
    }
    if (const auto found = input.snapshot->cwds.find(pid); found != input.snapshot->cwds.end()) {
        session.cwd = found->second;
    }
    addProcess(session, pid, *input.snapshot);
    if (session.cpu >= busyFrom || (session.cpu >= busyUntil && memory.busy.contains(key))) {
        memory.busy.insert(key);
        memory.lastBusy[key] = input.snapshotTime;
        session.status = AgentStatus::working();
        session.lastEvent = input.snapshotTime;
        session.workingSince = memory.workingSince.try_emplace(session.id, input.snapshotTime).first->second;
    } else {
        memory.busy.erase(key);
        memory.workingSince.erase(session.id);
        const auto busy = memory.lastBusy.find(key);
        session.lastEvent = busy == memory.lastBusy.end() ? startOf(root, input) : busy->second;
    }
    return session;
}

bool isTakenOff(const AgentSession& session, const Input& input) { // [O6, O7]
    const auto before = [&session](const std::map<std::string, Date>& dates) {
        const auto found = dates.find(session.id);
        return found != dates.end() && session.lastEvent <= found->second;
    };
    return input.hiddenKinds.contains(std::string{rawValue(session.kind)}) || before(input.dismissedAt) ||
           before(input.clearedAt);
}

std::vector<DetachedProcess> detachedProcesses(const Input& input) {
    std::vector<DetachedProcess> detached;
    for (const ProcInfo& proc : input.snapshot->detached) {
        if (std::ranges::find(input.hiddenProcesses, proc.friendlyName()) != input.hiddenProcesses.end()) {
            continue;
        }
        DetachedProcess row{.proc = proc, .cwd = {}, .ports = {}};
        if (const auto found = input.snapshot->cwds.find(proc.pid); found != input.snapshot->cwds.end()) {
            row.cwd = found->second;
        }
        if (const auto found = input.snapshot->ports.find(proc.pid); found != input.snapshot->ports.end()) {
            row.ports = found->second;
        }
        detached.push_back(std::move(row));
    }
    return detached;
}

/// Drops what is remembered of sessions and processes that nobody names any more.
void forget(const Input& input, Memory& memory) {
    const auto unknown = [&input](const std::string& id) {
        return !input.hooks.contains(id) && !input.transcripts.contains(id) && !id.starts_with("pid-");
    };
    std::erase_if(memory.foundGone, [&](const auto& entry) { return unknown(entry.first); });
    std::erase_if(memory.elsewhere, unknown);
    std::erase_if(memory.attended, unknown);
    const auto ended = [&input](const ProcessKey& key) {
        const auto found = input.snapshot->procs.find(key.pid);
        return found == input.snapshot->procs.end() || found->second.startTicks != key.startTicks;
    };
    if (input.snapshot) {
        std::erase_if(memory.busy, ended);
        std::erase_if(memory.leaving, [&](const auto& entry) { return ended(entry.first); });
        std::erase_if(memory.lastBusy, [&](const auto& entry) { return ended(entry.first); });
    }
}

} // namespace

bool isLeaving(Pid pid, const Input& input, const Memory& memory) { // [R4]
    const auto found = memory.leaving.find({pid, input.snapshot->procs.at(pid).startTicks});
    return found != memory.leaving.end() && input.now < found->second + leavingTakes;
}

void sort(std::vector<AgentSession>& sessions) {
    const auto key = [](const AgentSession& session) {
        const int group = session.status.isNeedsYou() ? 0 : session.status.isWorking() ? 1 : 2;
        const Date newest = group == 1 ? session.workingSince.value_or(session.lastEvent) : session.lastEvent;
        return std::tuple{group, -unixSeconds(newest), std::string_view{session.id}};
    };
    std::ranges::sort(sessions, [&key](const AgentSession& a, const AgentSession& b) { return key(a) < key(b); });
}

Output merge(const Input& input, Memory& memory) {
    Output output;
    std::set<Pid> claimed;
    for (const Facts& facts : gather(input, memory)) {
        if (facts.pid) {
            claimed.insert(*facts.pid);
        }
        if (facts.presence == Presence::gone) {
            output.gone.insert(facts.id);
        }
        AgentSession session = row(facts, input, memory);
        if (!hasLeft(session, facts, input.now) && !isTakenOff(session, input)) {
            output.sessions.push_back(std::move(session));
        }
    }
    if (input.snapshot) {
        for (const auto& [pid, kind] : input.snapshot->agentRoots) {
            if (!claimed.contains(pid) && !isLeaving(pid, input, memory)) {
                AgentSession session = processRow(pid, kind, input, memory);
                if (!isTakenOff(session, input)) {
                    output.sessions.push_back(std::move(session));
                }
            }
        }
        output.detached = detachedProcesses(input);
    }
    sort(output.sessions);
    forget(input, memory);
    return output;
}

} // namespace kippo::SessionMerge
