#include "Notch/LiveActivities.h"

#include "Support/UserDefaults.h"

#include <ctime>

namespace kippo {

namespace {

bool isNight(Date now) {
    const auto seconds = static_cast<std::time_t>(unixSeconds(now));
    std::tm local{};
    localtime_r(&seconds, &local);
    return local.tm_hour == 23 || local.tm_hour < 5;
}

} // namespace

LiveChoice chooseLive(std::optional<AgentsActivity> agents, const UserDefaults& defaults, Date now) {
    if (!defaults.get<bool>("showLiveActivity")) {
        return {};
    }
    std::vector<LiveActivity> candidates;
    if (agents) {
        candidates.emplace_back(std::move(*agents));
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
