#include "Agents/LiveSummary.h"

#include <algorithm>

namespace kippo {

std::optional<LiveSummary> liveSummary(std::span<const AgentSession> sessions) {
    LiveSummary summary;
    for (const AgentSession& session : sessions) {
        if (!session.status.isWorking() && !session.status.isNeedsYou()) {
            continue;
        }
        ++(session.status.isWorking() ? summary.working : summary.needsYou);
        summary.lights.push_back({session.kind, session.status.value});
    }
    if (summary.lights.empty()) {
        return std::nullopt;
    }
    const AgentKind first = summary.lights.front().kind;
    if (std::ranges::all_of(summary.lights, [first](const StatusLight& light) { return light.kind == first; })) {
        summary.kind = first;
    }
    return summary;
}

} // namespace kippo
