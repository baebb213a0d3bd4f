#pragma once

#include "Agents/AgentModels.h"

namespace kippo {

/// A session with as little as a session can have.
inline AgentSession sampleSession(std::string id, AgentStatus status, Date heard = dateFromUnix(1795226400)) {
    AgentSession session;
    session.id = std::move(id);
    session.cwd = "/home/dev/atlas";
    session.status = std::move(status);
    session.lastEvent = heard;
    return session;
}

} // namespace kippo
