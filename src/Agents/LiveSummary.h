#pragma once

#include "Agents/AgentModels.h"

#include <optional>
#include <span>
#include <vector>

namespace kippo {

/// One light of the closed notch: a session's state in its agent's colour.
struct StatusLight {
    AgentKind kind = AgentKind::claude;
    AgentStatus::Case status = AgentStatus::Case::idle;
    bool operator==(const StatusLight&) const = default;
};

/// What the closed notch says about the sessions that work or need the user.
struct LiveSummary {
    int working = 0;
    int needsYou = 0;
    std::optional<AgentKind> kind;   ///< when all of them are of one kind
    std::vector<StatusLight> lights; ///< one per session that works or needs the user, in list order
    bool operator==(const LiveSummary&) const = default;
};

/// The summary of a list; nothing when no session works or needs the user.
std::optional<LiveSummary> liveSummary(std::span<const AgentSession> sessions);

} // namespace kippo
