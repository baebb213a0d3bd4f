#pragma once

#include "Agents/SessionMerge.h"

#include <optional>
#include <string>
#include <vector>

/// The steps of the merge, each a file: who is who (SessionMatch), what state it is in (SessionStatus), the list
/// (SessionMerge).
namespace kippo::SessionMerge {

/// Everything that bears on one session, gathered.
struct Facts {
    enum class Presence { there, unknown, gone };

    std::string id;
    const HookState* hook = nullptr;
    const TranscriptWatcher::State* transcript = nullptr;
    const RegistryEntry* registry = nullptr; ///< only when its process runs
    bool registryIsStale = false;            ///< the registry names it with a process that does not run
    AgentKind kind = AgentKind::claude;
    std::optional<std::string> customName;
    std::optional<Pid> pid;
    Presence presence = Presence::unknown;
    bool attended = false; ///< a person sits, or sat, at its terminal
    double cpu = 0;        ///< of the process tree, percent of one core

    /// When anything was last heard of it, also what is no news.
    Date lastHeard() const;
    /// When it was first heard of, as far as known.
    Date firstHeard() const;
};

/// The sessions that the witnesses name, with kinds and processes. Processes that no session claims are not in it.
std::vector<Facts> gather(const Input& input, Memory& memory);

/// A status and the moment that it dates from.
struct Verdict {
    AgentStatus status;
    Date since;
    /// The session waits for a permission or an answer within its turn, so the turn goes on afterwards.
    bool midTurn = false;
};

Verdict judge(const Facts& facts, const Input& input);

/// When the process of `proc` started, by the clock of the snapshot.
inline Date startOf(const ProcInfo& proc, const Input& input) { return input.snapshotTime - Seconds{proc.uptime}; }

} // namespace kippo::SessionMerge
