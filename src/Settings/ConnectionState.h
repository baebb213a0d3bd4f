#pragma once

#include "Agents/AgentModels.h"

#include <optional>
#include <string>

namespace kippo {

/// How far the connection of an agent has come, in words.
struct ConnectionState {
    enum class Case {
        notConnected,
        silent, ///< the hooks are installed, and have not been heard of
        proven  ///< an event has arrived through them
    };
    Case value = Case::notConnected;
    std::string sentence;
    std::string advice; ///< what the person does next; empty when there is nothing to do

    bool operator==(const ConnectionState&) const = default;
};

/// `lastEvent` is when the agent's hooks were last heard of. An event from before `connectedAt`, where that is known,
/// came through an earlier connection and proves nothing about this one.
ConnectionState connectionState(HookAgent agent, bool isConnected, std::optional<Date> lastEvent,
                                std::optional<Date> connectedAt, Date now);

} // namespace kippo
