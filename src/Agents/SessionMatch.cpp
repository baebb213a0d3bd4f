#include "Agents/SessionFacts.h"

#include "Agents/CommandLine.h"

#include <algorithm>
#include <cmath>
#include <tuple>

namespace kippo::SessionMerge {

namespace {

/// How long a new process may be missing from a scan that was under way when it was first heard of.
constexpr Seconds scanSlack{3.0};
/// By how much the start time of a process and the clock of its first words may differ.
constexpr Seconds startSlack{2.0};

const ProcInfo* process(const Input& input, Pid pid) {
    if (!input.snapshot) {
        return nullptr;
    }
    const auto found = input.snapshot->procs.find(pid);
    return found == input.snapshot->procs.end() ? nullptr : &found->second;
}

bool runs(const Input& input, const RegistryEntry& entry) {
    const ProcInfo* proc = process(input, entry.pid);
    return proc && (entry.procStart == 0 || proc->startTicks == 0 || proc->startTicks == entry.procStart);
}

void decideKind(Facts& facts) {
    if (facts.transcript) {
        facts.kind =
            facts.transcript->entrypoint == "claude-desktop" ? AgentKind::claudeDesktop : facts.transcript->agent;
    } else if (facts.hook && facts.hook->source) {
        if (const auto known = agentKindFromRaw(*facts.hook->source)) {
            facts.kind = *known;
        } else {
            facts.kind = AgentKind::custom;
            facts.customName = facts.hook->source;
        }
    } else if (facts.hook) {
        facts.kind = agentKind(facts.hook->agent);
    } else if (facts.registry && facts.registry->entrypoint == "claude-desktop") {
        facts.kind = AgentKind::claudeDesktop;
    }
}

std::map<std::string, Facts> namedSessions(const Input& input) {
    std::map<std::string, Facts> named;
    const auto of = [&named](const std::string& id) -> Facts& {
        Facts& facts = named[id];
        facts.id = id;
        return facts;
    };
    for (const auto& [id, hook] : input.hooks) {
        of(id).hook = &hook;
    }
    for (const auto& [id, transcript] : input.transcripts) {
        if (!transcript.isSubagent) { // [R2]
            of(id).transcript = &transcript;
        }
    }
    for (const RegistryEntry& entry : input.registry) {
        if (runs(input, entry)) {
            Facts& facts = of(entry.session);
            if (!facts.registry || facts.registry->statusUpdatedAt < entry.statusUpdatedAt) {
                facts.registry = &entry;
            }
        } else if (input.snapshot && named.contains(entry.session)) {
            named[entry.session].registryIsStale = true;
        }
    }
    for (auto& [id, facts] : named) {
        decideKind(facts);
    }
    return named;
}

bool isInFolder(const Facts& facts, const std::string& folder) {
    return (facts.hook && (facts.hook->firstCwd == folder || facts.hook->cwd == folder)) ||
           (facts.transcript && facts.transcript->cwd == folder);
}

/// Gemini CLI answers one prompt and exits when it gets it by an option.
bool staysAtTerminal(std::string_view command) {
    return std::ranges::none_of(CommandLine::firstWords(command, 24), [](std::string_view word) {
        return word == "-p" || word == "--prompt" || word.starts_with("--prompt=");
    });
}

/// Matches processes to sessions. Holds the work lists of one merge.
class Matcher {
public:
    Matcher(const Input& input, Memory& memory, std::map<std::string, Facts>& named)
        : input_(input), memory_(memory), named_(named) {
        for (const auto& [pid, kind] : input.snapshot->agentRoots) {
            free_[pid] = input.snapshot->desktopRoots.contains(pid) ? AgentKind::claudeDesktop : kind;
        }
    }

    void run() {
        matchByRegistry();
        keepEarlier();
        matchByFolder();
        for (auto& [id, facts] : named_) {
            if (facts.pid) {
                const ProcInfo& proc = input_.snapshot->procs.at(*facts.pid);
                memory_.matched[id] = {proc.pid, proc.startTicks};
                memory_.seenWithProcess.insert(id);
                if (facts.kind == AgentKind::gemini && staysAtTerminal(proc.command)) {
                    memory_.attended.insert(id);
                }
            } else {
                const auto earlier = memory_.matched.find(id);
                if (ended(facts) && earlier != memory_.matched.end()) {
                    memory_.leaving[earlier->second] = facts.hook->time;
                }
                memory_.matched.erase(id);
            }
        }
    }

private:
    static bool ended(const Facts& facts) { return facts.hook && facts.hook->ended; }

    void take(Facts& facts, Pid pid) {
        facts.pid = pid;
        free_.erase(pid);
    }

    void matchByRegistry() { // [P1]
        for (auto& [id, facts] : named_) {
            if (facts.registry && !ended(facts)) {
                take(facts, facts.registry->pid);
            }
        }
    }

    void keepEarlier() { // [P3]
        for (auto& [id, facts] : named_) {
            const auto earlier = memory_.matched.find(id);
            if (facts.pid || ended(facts) || earlier == memory_.matched.end() || !free_.contains(earlier->second.pid)) {
                continue;
            }
            const ProcInfo& proc = input_.snapshot->procs.at(earlier->second.pid);
            if (proc.startTicks == earlier->second.startTicks && isAmongLastHeard(facts, proc.pid)) {
                take(facts, proc.pid);
            }
        }
    }

    bool fits(const Facts& facts, Pid pid) const { // [P2]
        const auto kind = free_.find(pid);
        const auto folder = input_.snapshot->cwds.find(pid);
        return !facts.pid && !ended(facts) && kind != free_.end() && kind->second == facts.kind &&
               folder != input_.snapshot->cwds.end() && isInFolder(facts, folder->second) &&
               facts.lastHeard() + startSlack >= startOf(input_.snapshot->procs.at(pid), input_);
    }

    /// Whether `facts` still gets one of the processes when the sessions heard of last are served first.
    bool isAmongLastHeard(const Facts& facts, Pid pid) const {
        if (!fits(facts, pid)) {
            return false;
        }
        std::ptrdiff_t later = 0;
        for (const auto& [id, other] : named_) {
            later += &other != &facts && fits(other, pid) && other.lastHeard() > facts.lastHeard() ? 1 : 0;
        }
        const auto processes =
            std::ranges::count_if(free_, [&](const auto& entry) { return fits(facts, entry.first); });
        return later < processes;
    }

    void matchByFolder() {
        // Those heard of last, as many as there are processes; then whoever else fits.
        std::vector<Facts*> first;
        std::vector<Facts*> rest;
        for (auto& [id, facts] : named_) {
            if (!facts.pid && !ended(facts)) {
                const bool served =
                    std::ranges::any_of(free_, [&](const auto& entry) { return isAmongLastHeard(facts, entry.first); });
                (served ? first : rest).push_back(&facts);
            }
        }
        matchClosest(first);
        matchClosest(rest);
    }

    /// Gives processes to `sessions`, the pair first whose beginnings lie closest together.
    void matchClosest(const std::vector<Facts*>& sessions) {
        struct Pair {
            double distance;
            Facts* facts;
            Pid pid;
        };
        std::vector<Pair> pairs;
        for (Facts* facts : sessions) {
            for (const auto& [pid, kind] : free_) {
                if (fits(*facts, pid)) {
                    const Date start = startOf(input_.snapshot->procs.at(pid), input_);
                    pairs.push_back({std::abs((facts->firstHeard() - start).count()), facts, pid});
                }
            }
        }
        std::ranges::sort(pairs, {}, [](const Pair& pair) {
            return std::tuple{pair.distance, pair.pid, std::string_view{pair.facts->id}};
        });
        for (const Pair& pair : pairs) {
            if (!pair.facts->pid && free_.contains(pair.pid)) {
                take(*pair.facts, pair.pid);
            }
        }
    }

    const Input& input_;
    Memory& memory_;
    std::map<std::string, Facts>& named_;
    std::map<Pid, AgentKind> free_; ///< agent processes that no session has yet
};

/// Agents whose process is known by its command line wherever it was started from. Cursor's hooks also come from its
/// editor, which is no agent process.
bool alwaysShowsInProcessTable(AgentKind kind) {
    return kind == AgentKind::claude || kind == AgentKind::codex || kind == AgentKind::gemini;
}

Facts::Presence presence(const Facts& facts, const Input& input, Memory& memory) {
    using Presence = Facts::Presence;
    if (facts.pid) { // [L1]
        memory.foundGone.erase(facts.id);
        return Presence::there;
    }
    if (facts.hook && facts.hook->ended) { // [L2]
        return Presence::gone;
    }
    if (memory.seenWithProcess.contains(facts.id) || facts.registryIsStale) { // [L3]
        return Presence::gone;
    }
    const auto found = memory.foundGone.find(facts.id);
    if (found != memory.foundGone.end() && facts.lastHeard() > found->second) { // [L5]
        memory.elsewhere.insert(facts.id);
    }
    // A table that holds nothing at all was not read.
    if (!input.snapshot || input.snapshot->procs.empty() || !alwaysShowsInProcessTable(facts.kind) ||
        memory.elsewhere.contains(facts.id)) { // [L6]
        return Presence::unknown;
    }
    if (input.snapshotTime < facts.lastHeard() + scanSlack) {
        return Presence::unknown;
    }
    memory.foundGone.emplace(facts.id, facts.lastHeard()); // [L4]
    return Presence::gone;
}

} // namespace

Date Facts::lastHeard() const {
    Date last = hook ? hook->time : distantPast;
    if (transcript) {
        last = std::max(last, std::max(transcript->phaseSince, transcript->lastActivity));
    }
    if (registry && registry->statusUpdatedAt) {
        last = std::max(last, *registry->statusUpdatedAt);
    }
    return last;
}

Date Facts::firstHeard() const {
    if (transcript && transcript->startedAt) {
        return *transcript->startedAt;
    }
    if (hook) {
        return hook->firstHeard;
    }
    return transcript ? transcript->phaseSince : Date{};
}

std::vector<Facts> gather(const Input& input, Memory& memory) {
    auto named = namedSessions(input);
    if (input.snapshot) {
        Matcher{input, memory, named}.run();
    }
    std::vector<Facts> all;
    for (auto& [id, facts] : named) {
        if (facts.transcript && !facts.hook && !facts.registry && !facts.pid && !facts.transcript->cwd) { // [R2]
            continue;
        }
        if (facts.pid) {
            facts.cpu = input.snapshot->procs.at(*facts.pid).cpu;
            for (const ProcInfo& below : ProcessScanner::descendants(*facts.pid, *input.snapshot)) {
                facts.cpu += below.cpu;
            }
        }
        facts.presence = presence(facts, input, memory);
        facts.attended =
            memory.attended.contains(facts.id) || (facts.transcript && facts.transcript->interactive.value_or(false));
        all.push_back(std::move(facts));
    }
    return all;
}

} // namespace kippo::SessionMerge
