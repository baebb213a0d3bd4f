#include "Notch/LiveActivities.h"

#include "Support/LocalTime.h"
#include "Support/UserDefaults.h"

namespace kippo {

namespace {

bool isNight(Date now) {
    const int hour = localTime(now).hour;
    return hour == 23 || hour < 5;
}

} // namespace

std::optional<FocusActivity> focusActivity(const FocusStore& focus) {
    if (!focus.isRunning() && !focus.isPaused()) {
        return std::nullopt;
    }
    return FocusActivity{focus.phase(), focus.endsAt(), focus.total(), focus.pausedRemaining()};
}

LiveChoice chooseLive(std::optional<AgentsActivity> agents, std::optional<FocusActivity> focus,
                      const UserDefaults& defaults, Date now) {
    if (!defaults.get<bool>("showLiveActivity")) {
        return {};
    }
    std::vector<LiveActivity> candidates;
    if (agents) {
        candidates.emplace_back(std::move(*agents));
    }
    if (focus) {
        candidates.emplace_back(*focus);
    }
    if (candidates.empty() && defaults.get<bool>("mascotEnabled") && defaults.get<bool>("mascotNightOwl") &&
        isNight(now)) {
        candidates.emplace_back(SleepingActivity{});
    }
    LiveChoice choice;
    if (!candidates.empty()) {
        choice.primary = candidates[0];
    }
    if (candidates.size() > 1) {
        choice.secondary = candidates[1];
    }
    return choice;
}

} // namespace kippo
