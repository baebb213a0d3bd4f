#pragma once

#include "Agents/AgentModels.h"
#include "App/Prefs.h"
#include "Fakes/FakeDefaults.h"

namespace kippo {

/// Settings that nobody has changed yet.
inline FakeDefaults unchangedSettings() {
    FakeDefaults made;
    Prefs::registerDefaults(made);
    return made;
}

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
