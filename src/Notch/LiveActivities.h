#pragma once

#include "Notch/NotchModel.h"
#include "Support/Time.h"

namespace kippo {

/// What the two wings of the closed notch show.
struct LiveChoice {
    std::optional<LiveActivity> primary;
    std::optional<LiveActivity> secondary;
    bool operator==(const LiveChoice&) const = default;
};

/// The focus timer as a live activity; nothing while it is idle.
std::optional<FocusActivity> focusActivity(const FocusStore& focus);

/// The first two of what goes on, most important first: the agents at work, the focus timer. At night, when nothing
/// goes on, the mascot sleeps in the wing. Nothing when the user wants no live activity.
LiveChoice chooseLive(std::optional<AgentsActivity> agents, std::optional<FocusActivity> focus,
                      const UserDefaults& defaults, Date now);

} // namespace kippo
