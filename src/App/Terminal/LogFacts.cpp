#include "App/Terminal/LogFacts.h"

#include "Agents/EventLog.h"
#include "Agents/HookBridge.h"

#include <algorithm>

namespace kippo::Terminal {

namespace {

// The clock of a hook and that of this process are the same; this is for one that is being set.
constexpr Seconds clockTolerance{60};

void note(std::map<HookAgent, Date>& dates, HookAgent agent, Date date) {
    const auto [entry, isNew] = dates.emplace(agent, date);
    entry->second = isNew ? date : std::max(entry->second, date);
}

} // namespace

LogFacts logFacts(const std::string& path, Date now) {
    LogFacts facts;
    for (const auto& line : EventLog{path}.readLines()) {
        const auto event = HookBridge::parse(line);
        if (!event) {
            ++facts.damaged;
            continue;
        }
        ++facts.events;
        facts.fromTheFuture += event->time > now + clockTolerance ? 1 : 0;
        // A name that no agent of ours has proves nothing about their hooks.
        if (!event->source || hookAgentFromRaw(*event->source)) {
            note(facts.lastByAgent, event->judgedBy(), std::min(event->time, now));
        }
    }
    return facts;
}

std::map<HookAgent, Date> lastEvents(const LogFacts& log, const UserDefaults& defaults, Date now) {
    auto dates = log.lastByAgent;
    for (const auto& [name, seconds] : defaults.get<std::map<std::string, double>>("lastEventByAgent")) {
        if (const auto agent = hookAgentFromRaw(name)) {
            note(dates, *agent, std::min(dateFromReference(seconds), now));
        }
    }
    return dates;
}

} // namespace kippo::Terminal
