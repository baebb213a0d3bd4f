#include "Agents/AgentStore.h"

#include <algorithm>
#include <utility>

/// What the user does with the lists.
namespace kippo {

namespace {

/// What was asked to end takes a moment to do so.
constexpr Seconds endingTime{0.5};

} // namespace

// MARK: sessions

void AgentStore::dismiss(const AgentSession& session) {
    dismissedAt_[session.id] = session.lastEvent;
    merge();
}

std::vector<AgentSession> AgentStore::clearable() const {
    std::vector<AgentSession> over;
    std::ranges::copy_if(sessions_, std::back_inserter(over), [this](const AgentSession& session) {
        const bool orphaned = gone_.contains(session.id);
        return orphaned || session.status.isDone() || (session.status.isIdle() && !session.rootPID);
    });
    return over;
}

void AgentStore::clearFinishedAndOrphaned() {
    for (const AgentSession& session : clearable()) {
        clearedAt_[session.id] = session.lastEvent;
    }
    merge();
}

void AgentStore::injectDemo(std::map<std::string, AgentSession> sessions) {
    demoSessions_.emplace();
    for (auto& [id, session] : sessions) {
        demoSessions_->push_back(std::move(session));
    }
    SessionMerge::sort(*demoSessions_);
    merge();
}

void AgentStore::clearDemo() {
    demoSessions_.reset();
    merge();
}

// MARK: what is shown

void AgentStore::setVisible(AgentKind kind, bool visible) { preferences_.setHidden(kind, !visible); }

bool AgentStore::isHidden(AgentKind kind) const { return hidden().contains(std::string{rawValue(kind)}); }

void AgentStore::setLights(AgentKind kind, bool on) { preferences_.setLightsOff(kind, !on); }

bool AgentStore::drivesLights(AgentKind kind) const { return !lightsOff().contains(std::string{rawValue(kind)}); }

std::optional<LiveSummary> AgentStore::statusLights() const {
    std::vector<AgentSession> driving;
    std::ranges::copy_if(sessions_, std::back_inserter(driving),
                         [this](const AgentSession& session) { return drivesLights(session.kind); });
    return kippo::liveSummary(driving);
}

void AgentStore::watch(const std::string& name) { preferences_.watch(name); }

void AgentStore::unwatch(const std::string& name) { preferences_.unwatch(name); }

void AgentStore::dismissSuggestion(const std::string& name) { preferences_.dismissSuggestion(name); }

void AgentStore::hideProcess(const std::string& named) { preferences_.hideProcess(named); }

void AgentStore::unhideProcess(const std::string& named) { preferences_.unhideProcess(named); }

// MARK: the agents' files

void AgentStore::refreshConnections() {
    if (connections_.refresh()) {
        tell();
    }
}

void AgentStore::connect(HookAgent agent) {
    connections_.connect(agent);
    tell();
}

void AgentStore::disconnect(HookAgent agent) {
    connections_.disconnect(agent);
    tell();
}

void AgentStore::clearInstallError() {
    connections_.clearError();
    tell();
}

void AgentStore::setSummaryInstructions(HookAgent agent, bool on) {
    connections_.setSummaryInstructions(agent, on);
    tell();
}

// MARK: processes

void AgentStore::stop(Pid pid) { stop(std::vector{pid}); }

void AgentStore::stopAllDetached() {
    std::vector<Pid> pids;
    for (const DetachedProcess& process : detached_) {
        pids.push_back(process.proc.pid);
    }
    stop(std::move(pids));
}

void AgentStore::stop(std::vector<Pid> pids) {
    std::erase_if(pids, [this](Pid pid) { return !lastSnapshot_ || !lastSnapshot_->procs.contains(pid); });
    if (pids.empty()) {
        return;
    }
    ports_.work.run(
        [&processes = ports_.processes, snapshot = lastSnapshot_, pids = std::move(pids)] {
            for (const Pid pid : pids) {
                ProcessScanner::terminate(processes, pid, snapshot.get());
            }
        },
        [this, alive = std::weak_ptr(alive_)] {
            if (!alive.expired()) {
                afterStop_ = ports_.scheduler.after(endingTime, [this] { refreshProcessesAnew(); });
            }
        });
}

} // namespace kippo
