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

/// The first two of what goes on, most important first: the agents at work, then what else joins `LiveActivity`. At
/// night, when nothing goes on, the mascot sleeps in the wing. Nothing when the user wants no live activity.
LiveChoice chooseLive(std::optional<AgentsActivity> agents, const UserDefaults& defaults, Date now);

} // namespace kippo
