#include "Agents/AgentStore.h"

#include <algorithm>

/// What the agents' hooks report.
namespace kippo {

namespace {

/// How long the dates of the agents' last events may be behind on disk.
constexpr Seconds persistGap{30.0};

} // namespace

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
    if (!initial && !knowsAll) {
        refreshProcessesUnlessRecent();
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
    for (auto* dates : {&dismissedAt_, &clearedAt_}) {
        std::erase_if(*dates, [&](const auto& entry) {
            return entry.second < now - oldestEvent && !memory_.matched.contains(entry.first) &&
                   !hookStates_.contains(entry.first) && !transcripts_.contains(entry.first) &&
                   !entry.first.starts_with("pid-");
        });
    }
    std::erase_if(previousStatus_, [this](const auto& entry) {
        return !hookStates_.contains(entry.first) && !transcripts_.contains(entry.first) &&
               std::ranges::find(sessions_, entry.first, &AgentSession::id) == sessions_.end();
    });
}

} // namespace kippo
