#pragma once

#include "Platform/Linux/X11Server.h"
#include "Support/IdleTime.h"

namespace kippo {

/// Asks the X server's screen saver, which counts from the last key, click or motion. Tells nothing where the server
/// has none, and under Wayland.
class X11IdleTime final : public IdleTime {
public:
    X11IdleTime();

    std::optional<Seconds> sinceLastInput() override;
    /// Whether there is a server that tells.
    bool isAvailable() const { return server_.connection != nullptr; }

private:
    X11::Desktop server_; ///< without a connection when there is none to ask
};

} // namespace kippo
