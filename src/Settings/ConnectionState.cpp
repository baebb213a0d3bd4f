#include "Settings/ConnectionState.h"

#include "Agents/HookInstallation.h"

namespace kippo {

namespace {

/// "just now", "2 min ago". A date in the future, as after the clock was set back, is now.
std::string ago(Date date, Date now) {
    const double seconds = std::chrono::duration<double>(now - date).count();
    return seconds < 60 ? "just now" : Formatters::friendlyDuration(seconds) + " ago";
}

} // namespace

ConnectionState connectionState(HookAgent agent, bool isConnected, std::optional<Date> lastEvent,
                                std::optional<Date> connectedAt, Date now) {
    using Case = ConnectionState::Case;
    if (!isConnected) {
        return {Case::notConnected,
                lastEvent ? "Not connected; last heard from " + ago(*lastEvent, now) : "Not connected",
                {}};
    }
    if (!lastEvent || (connectedAt && *lastEvent < *connectedAt)) {
        return {Case::silent, "Connected; nothing heard yet", std::string{HookBridge::afterConnecting(agent)}};
    }
    return {Case::proven, "Connected and heard from " + ago(*lastEvent, now), {}};
}

} // namespace kippo
