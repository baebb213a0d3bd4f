#include "Agents/AgentStore.h"

#include "Support/Folders.h"

#include <algorithm>
#include <tuple>
#include <utility>

namespace kippo {

namespace {

constexpr Seconds eventInterval{0.5};
constexpr Seconds transcriptInterval{1.5};
constexpr Seconds tickInterval{3.0};
/// A session that has just turned up asks for its process at once, but not more often than this.
constexpr Seconds processGap{2.0};
/// How long the dates of the agents' last events may be behind on disk.
constexpr Seconds persistGap{30.0};

/// Whether the agent's transcripts are among those that TranscriptWatcher follows.
bool writesTranscripts(const HookState& hook) { return hook.agent != HookAgent::cursor; }

/// What one poll of transcripts and registry brings home from the work queue.
struct Poll {
    std::vector<TranscriptWatcher::State> states;
    std::vector<RegistryEntry> registry;
    std::vector<std::string> files;
};

} // namespace

AgentStore::AgentStore(Places places, Ports ports, Role role)
    : places_(std::move(places)), ports_(ports), role_(role), readers_(std::make_shared<Readers>(places_.home)),
      eventLog_(places_.eventLog()), alertsArmAt_(ports.scheduler.now() + alertGrace) {
    for (const auto& [raw, seconds] : ports_.defaults.get<std::map<std::string, double>>("lastEventByAgent")) {
        if (const auto agent = hookAgentFromRaw(raw)) {
            lastEventByAgent_[*agent] = dateFromReference(seconds);
        }
    }
    readDefaults();
    defaultsSubscription_ = ports_.defaults.observe([this] {
        if (readDefaults()) {
            merge();
        }
    });
}

AgentStore::~AgentStore() {
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
    refreshOnce();
    timers_.push_back(ports_.scheduler.every(eventInterval, Seconds{0.1}, [this] { readEvents(false); }));
    timers_.push_back(ports_.scheduler.every(transcriptInterval, Seconds{0.3}, [this] { pollTranscripts(); }));
    timers_.push_back(ports_.scheduler.every(tickInterval, Seconds{0.5}, [this] { onTick(); }));
}

void AgentStore::refreshOnce() {
    readEvents(true);
    pollTranscripts();
    refreshProcesses();
    refreshUsage();
}

void AgentStore::onTick() {
    ++tick_;
    if (isVisible_ || tick_ % 5 == 0) {
        refreshProcesses();
    }
    if ((isVisible_ && tick_ % 3 == 0) || tick_ % 20 == 0) {
        refreshUsage();
    }
}

void AgentStore::setVisible(bool visible) {
    if (visible == isVisible_) {
        return;
    }
    isVisible_ = visible;
    if (visible && ports_.scheduler.now() > processesAskedAt_ + processGap) {
        refreshProcesses();
    }
}

// MARK: hook events

void AgentStore::readEvents(bool initial) {
    const Date now = ports_.scheduler.now();
    bool applied = false;
    bool knowsAll = true;
    bool turnEnded = false;
    for (const std::string& line : eventLog_.readLines()) {
        const auto event = HookBridge::parse(line);
        if (!event || event->time < now - oldestEvent) {
            continue;
        }
        apply(*event);
        applied = true;
        knowsAll = knowsAll && memory_.matched.contains(event->session);
        turnEnded = turnEnded || hookStates_[event->session].status == AgentStatus::done();
    }
    if (!applied) {
        return;
    }
    persistLastEvents();
    forgetOldHooks(now);
    if (!initial && !knowsAll && now > processesAskedAt_ + processGap) {
        refreshProcesses();
    }
    if (turnEnded && !initial) {
        // The transcript holds the whole of the reply, of which the hook brought only the start.
        pollTranscripts();
        if (pollingTranscripts_) {
            return; // the poll merges
        }
    }
    merge();
}

void AgentStore::apply(const HookBridge::Event& event) {
    noteAgentHeard(event);
    hookStates_[event.session].apply(event);
}

void AgentStore::noteAgentHeard(const HookBridge::Event& event) {
    lastEventAt_ = event.time;
    // A name that no agent of ours has proves nothing about their hooks.
    if (!event.source || hookAgentFromRaw(*event.source)) {
        lastEventByAgent_[event.judgedBy()] = event.time;
    }
}

void AgentStore::persistLastEvents() {
    const Date now = ports_.scheduler.now();
    const auto stored = ports_.defaults.get<std::map<std::string, double>>("lastEventByAgent");
    const bool isNew = std::ranges::any_of(lastEventByAgent_, [&stored](const auto& entry) {
        return !stored.contains(std::string{rawValue(entry.first)});
    });
    // Every event would otherwise write a file; what the date is for is the day, and the first of all.
    if (role_ == Role::onlooker || (!isNew && now < lastEventsPersistedAt_ + persistGap)) {
        return;
    }
    std::map<std::string, double> dates;
    for (const auto& [agent, date] : lastEventByAgent_) {
        dates[std::string{rawValue(agent)}] = referenceSeconds(date);
    }
    lastEventsPersistedAt_ = now;
    if (dates != stored) {
        ports_.defaults.set("lastEventByAgent", dates);
    }
}

void AgentStore::forgetOldHooks(Date now) {
    std::erase_if(hookStates_, [&](const auto& entry) {
        return entry.second.time < now - oldestEvent && !memory_.matched.contains(entry.first);
    });
    std::erase_if(previousStatus_, [this](const auto& entry) {
        return !hookStates_.contains(entry.first) && !transcripts_.contains(entry.first) &&
               std::ranges::find(sessions_, entry.first, &AgentSession::id) == sessions_.end();
    });
}

// MARK: transcripts and registry

void AgentStore::pollTranscripts() {
    if (pollingTranscripts_) {
        pollAgain_ = true;
        return;
    }
    pollingTranscripts_ = true;
    const bool unknownSession = std::ranges::any_of(hookStates_, [this](const auto& entry) {
        return writesTranscripts(entry.second) && entry.second.status == AgentStatus::working() &&
               !transcripts_.contains(entry.first);
    });
    const auto poll = std::make_shared<Poll>();
    const Date now = ports_.scheduler.now();
    ports_.work.run(
        [readers = readers_, poll, now, unknownSession] {
            if (unknownSession) {
                readers->transcripts.discoverSoon();
            }
            poll->states = readers->transcripts.poll(now);
            poll->registry = readers->registry.poll();
            poll->files = readers->transcripts.watchedPaths();
        },
        [this, poll, alive = std::weak_ptr(alive_)] {
            if (alive.expired()) {
                return;
            }
            pollingTranscripts_ = false;
            transcripts_.clear();
            for (auto& state : poll->states) {
                const auto [entry, isNew] = transcripts_.try_emplace(state.session, state);
                if (!isNew && entry->second.lastActivity < state.lastActivity) {
                    entry->second = std::move(state);
                }
            }
            registry_ = std::move(poll->registry);
            watchFiles(std::move(poll->files));
            merge();
            if (std::exchange(pollAgain_, false)) {
                pollTranscripts();
            }
        });
}

/// Watches the event log, the transcripts and the registry's entries.
void AgentStore::watchFiles(std::vector<std::string> transcripts) {
    if (!ports_.files) {
        return;
    }
    std::vector<std::string> files = std::move(transcripts);
    files.push_back(eventLog_.path());
    for (const RegistryEntry& entry : registry_) {
        files.push_back(places_.home + "/.claude/sessions/" + std::to_string(entry.pid) + ".json");
    }
    if (files != watchedFiles_) {
        watchedFiles_ = files;
        ports_.files->watch(std::move(files));
    }
}

void AgentStore::onFileChanged(const std::string& path) {
    if (path == eventLog_.path()) {
        readEvents(false);
    } else {
        pollTranscripts();
    }
}

// MARK: processes and usage

void AgentStore::refreshProcesses() {
    if (scanningProcesses_) {
        return;
    }
    scanningProcesses_ = true;
    processesAskedAt_ = ports_.scheduler.now();
    const auto result = std::make_shared<ProcessScanner::Snapshot>();
    ports_.work.run([&processes = ports_.processes, result,
                     watch = watchedNames_] { *result = ProcessScanner::snapshot(processes, watch); },
                    [this, result, taken = processesAskedAt_, alive = std::weak_ptr(alive_)] {
                        if (alive.expired()) {
                            return;
                        }
                        scanningProcesses_ = false;
                        lastSnapshot_ = std::move(*result);
                        snapshotTime_ = taken;
                        merge();
                    });
}

void AgentStore::refreshUsage() {
    if (scanUsage) {
        scanUsage();
    }
}

// MARK: the list

void AgentStore::merge() {
    const Date now = ports_.scheduler.now();
    const SessionMerge::Input input{.hooks = hookStates_,
                                    .transcripts = transcripts_,
                                    .registry = registry_,
                                    .snapshot = lastSnapshot_ ? &*lastSnapshot_ : nullptr,
                                    .snapshotTime = snapshotTime_,
                                    .now = now,
                                    .hiddenKinds = hidden_,
                                    .hiddenProcesses = hiddenProcesses_,
                                    .dismissedAt = dismissedAt_,
                                    .clearedAt = clearedAt_};
    SessionMerge::Output output = SessionMerge::merge(input, memory_);
    const bool changed = output.sessions != sessions_ || output.detached != detached_;
    sessions_ = std::move(output.sessions);
    detached_ = std::move(output.detached);
    if (changed) {
        observers_.notify();
    }
    raiseAlerts(sessions_, now);
    if (changed && onChange) {
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

void AgentStore::raiseAlerts(const std::vector<AgentSession>& sessions, Date now) {
    std::vector<AgentSession> alerts;
    for (const AgentSession& session : sessions) {
        const auto before = previousStatus_.find(session.id);
        if (before != previousStatus_.end() && before->second != session.status && now >= alertsArmAt_ &&
            !session.id.starts_with("pid-") && isWorthAnAlert(session, before->second, now)) {
            alerts.push_back(session);
        }
        previousStatus_.insert_or_assign(session.id, session.status);
        if (session.status.isDone() || session.status.isIdle()) {
            memory_.workingSince.erase(session.id);
        }
    }
    // The last peek is the one that stays on screen.
    std::ranges::stable_partition(alerts, [](const AgentSession& session) { return session.status.isDone(); });
    if (onAlert) {
        for (const AgentSession& session : alerts) {
            onAlert(session);
        }
    }
}

void AgentStore::dismiss(const AgentSession& session) {
    dismissedAt_[session.id] = session.lastEvent;
    merge();
}

void AgentStore::setVisible(AgentKind kind, bool visible) {
    std::set<std::string> hidden = hidden_;
    const std::string raw{rawValue(kind)};
    if (visible) {
        hidden.erase(raw);
    } else {
        hidden.insert(raw);
    }
    ports_.defaults.set("hiddenAgents", std::vector<std::string>{hidden.begin(), hidden.end()});
}

bool AgentStore::readDefaults() {
    using Names = std::vector<std::string>;
    const auto before = std::tuple{hidden_, hiddenProcesses_, watchedNames_};
    const Names hidden = ports_.defaults.get<Names>("hiddenAgents");
    hidden_ = {hidden.begin(), hidden.end()};
    hiddenProcesses_ = ports_.defaults.get<Names>("hiddenProcesses");
    watchedNames_ = ports_.defaults.get<Names>("watchedAgentNames");
    return before != std::tie(hidden_, hiddenProcesses_, watchedNames_);
}

} // namespace kippo
