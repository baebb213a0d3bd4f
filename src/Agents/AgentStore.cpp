#include "Agents/AgentStore.h"

#include "Agents/AgentSuggestions.h"
#include "Agents/LeftoverScanner.h"
#include "Support/Folders.h"

#include <algorithm>
#include <utility>

namespace kippo {

namespace {

constexpr Seconds eventInterval{0.5};
constexpr Seconds transcriptInterval{1.5};
constexpr Seconds tickInterval{3.0};
/// Usage is not read again sooner than this.
constexpr Seconds usageGap{9.0};

} // namespace

AgentStore::AgentStore(Places places, Ports ports, Role role)
    : places_(std::move(places)), ports_(ports), role_(role), readers_(std::make_shared<Readers>(places_.home)),
      eventLog_(places_.eventLog()), alertsArmAt_(ports.scheduler.now() + alertGrace), preferences_(ports.defaults),
      connections_(ports.userFiles, places_.home, ports.executable),
      usageScanner_(std::make_shared<UsageScanner>(places_.home)),
      leftovers_({ports.scans, ports.runner, ports.trash},
                 LeftoverScanner::globalCaches(places_.home, places_.cacheFolder), [this] { tell(); }) {
    for (const auto& [raw, seconds] : ports_.defaults.get<std::map<std::string, double>>("lastEventByAgent")) {
        if (const auto agent = hookAgentFromRaw(raw)) {
            lastEventByAgent_[*agent] = dateFromReference(seconds);
        }
    }
    defaultsSubscription_ = ports_.defaults.observe([this] { readDefaults(); });
}

AgentStore::~AgentStore() {
    usageScanner_->cancel(); // it may be reading gigabytes, and whoever ends the queue waits for it
    if (ports_.files) {
        ports_.files->setCallback({});
    }
}

int AgentStore::workingCount() const {
    return static_cast<int>(std::ranges::count_if(sessions_, [](const auto& s) { return s.status.isWorking(); }));
}

int AgentStore::needsYouCount() const {
    return static_cast<int>(std::ranges::count_if(sessions_, [](const auto& s) { return s.status.isNeedsYou(); }));
}

void AgentStore::start() {
    if (!timers_.empty()) {
        return;
    }
    if (role_ == Role::keeper) {
        eventLog_.trim();
        makeFolders(places_.supportFolder); // so that the first hook of all can be watched for
    }
    if (ports_.files) {
        ports_.files->setCallback([this](const std::string& path) { onFileChanged(path); });
        watchFiles({});
    }
    readEvents(true);
    checkConnections();
    lookAround();
    timers_.push_back(ports_.scheduler.every(eventInterval, Seconds{0.1}, [this] { readEvents(false); }));
    timers_.push_back(ports_.scheduler.every(transcriptInterval, Seconds{0.3}, [this] { pollTranscripts(); }));
    timers_.push_back(ports_.scheduler.every(tickInterval, Seconds{0.5}, [this] { onTick(); }));
}

void AgentStore::refreshOnce() {
    readEvents(true);
    lookAround();
}

void AgentStore::checkConnections() {
    if (role_ == Role::onlooker) {
        return;
    }
    if (ports_.isInstalled) {
        connections_.repair();
    }
    refreshConnections();
}

void AgentStore::lookAround() {
    pollTranscripts();
    refreshProcesses();
    if (role_ == Role::keeper) {
        refreshUsage();
    }
}

void AgentStore::onTick() {
    ++tick_;
    if (isVisible_ || tick_ % 5 == 0) {
        refreshProcesses();
    }
    if (role_ == Role::keeper && ((isVisible_ && tick_ % 3 == 0) || tick_ % 20 == 0)) {
        refreshUsage();
    }
}

void AgentStore::setVisible(bool visible) {
    if (visible == isVisible_) {
        return;
    }
    isVisible_ = visible;
    if (!visible) {
        return;
    }
    refreshProcessesUnlessRecent();
    if (role_ == Role::keeper) {
        refreshConnections();
        if (ports_.scheduler.now() >= usageAskedAt_ + usageGap) {
            refreshUsage();
        }
    }
}

// MARK: the list

void AgentStore::merge(bool otherNews) {
    const Date now = ports_.scheduler.now();
    const SessionMerge::Input input{.hooks = hookStates_,
                                    .transcripts = transcripts_,
                                    .registry = registry_,
                                    .snapshot = lastSnapshot_.get(),
                                    .snapshotTime = snapshotTime_,
                                    .now = now,
                                    .hiddenKinds = preferences_.hidden(),
                                    .hiddenProcesses = preferences_.hiddenProcesses(),
                                    .dismissedAt = dismissedAt_,
                                    .clearedAt = clearedAt_};
    SessionMerge::Output output = SessionMerge::merge(input, memory_);
    addUsage(output.sessions);
    gone_ = std::move(output.gone);
    const std::vector<AgentSession> alerts = takeAlerts(output.sessions, now);
    if (demoSessions_) {
        output.sessions = *demoSessions_;
    }
    const bool changed = output.sessions != sessions_ || output.detached != detached_;
    sessions_ = std::move(output.sessions);
    detached_ = std::move(output.detached);
    if (changed || otherNews) {
        observers_.notify();
    }
    if (onAlert) {
        for (const AgentSession& session : alerts) {
            onAlert(session);
        }
    }
    if ((changed || otherNews) && onChange) {
        onChange();
    }
}

void AgentStore::addUsage(std::vector<AgentSession>& sessions) const {
    for (AgentSession& session : sessions) {
        const auto found = usageReport_.bySessionToday.find(session.id);
        if (found != usageReport_.bySessionToday.end()) {
            session.tokensToday = found->second.tokens;
            session.costToday = found->second.cost;
        }
    }
}

void AgentStore::tell() {
    observers_.notify();
    if (onChange) {
        onChange();
    }
}

bool AgentStore::isWorthAnAlert(const AgentSession& session, const AgentStatus& before, Date now) const {
    if (session.status.isNeedsYou()) {
        return true;
    }
    const auto since = memory_.workingSince.find(session.id);
    return session.status.isDone() && before.isWorking() && since != memory_.workingSince.end() &&
           now - since->second > shortTurn;
}

std::vector<AgentSession> AgentStore::takeAlerts(const std::vector<AgentSession>& sessions, Date now) {
    std::vector<AgentSession> finished;
    std::vector<AgentSession> waiting;
    for (const AgentSession& session : sessions) {
        const auto before = previousStatus_.find(session.id);
        if (before != previousStatus_.end() && before->second != session.status && now >= alertsArmAt_ &&
            !session.id.starts_with("pid-") && isWorthAnAlert(session, before->second, now)) {
            (session.status.isDone() ? finished : waiting).push_back(session);
        }
        previousStatus_.insert_or_assign(session.id, session.status);
        if (session.status.isDone() || session.status.isIdle()) {
            memory_.workingSince.erase(session.id);
        }
    }
    // The last peek is the one that stays on screen.
    finished.insert(finished.end(), waiting.begin(), waiting.end());
    return finished;
}

void AgentStore::readDefaults() {
    const std::vector<std::string> watched = preferences_.watchedNames();
    if (!preferences_.reload()) {
        return;
    }
    if (lastSnapshot_) {
        suggestions_ = agentSuggestions(*lastSnapshot_, preferences_);
    }
    merge(true);
    if (preferences_.watchedNames() != watched && lastSnapshot_) {
        refreshProcessesAnew();
    }
}

} // namespace kippo
