#pragma once

#include "Notch/FullScreenWatcher.h"
#include "Platform/Linux/X11Server.h"

#include <optional>
#include <set>
#include <vector>

namespace kippo {

/// Full-screen windows as the window manager of an X server tells of them. It hears of every change and asks for
/// nothing in between. Whoever owns it calls `dispatch` when `descriptor` can be read. It has a connection of its own.
class X11FullScreenWatcher final : public FullScreenWatcher {
public:
    /// Takes the server that the environment names. Without one, and under Wayland, no window is ever full-screen.
    X11FullScreenWatcher();

    bool fillsScreenAt(Point corner) const override;
    [[nodiscard]] Subscription observe(std::function<void()> callback) override;

    /// Readable when something happened; -1 when there is no server.
    int descriptor() const;
    /// Reads what happened and calls back. False when the server is gone.
    bool dispatch();

private:
    struct Atoms {
        xcb_atom_t stacking, desktop, windowDesktop, state, fullScreen, hidden, type, desktopType, dockType;
    };
    /// A window in sight.
    struct Window {
        std::int32_t left, top, right, bottom; ///< in device pixels
        bool isFullScreen;
        bool operator==(const Window&) const = default;
    };

    xcb_atom_t atom(std::string_view name) const;
    std::vector<std::uint32_t> list(xcb_window_t window, xcb_atom_t property) const;
    std::optional<Window> look(xcb_window_t window, const std::vector<std::uint32_t>& currentDesktop) const;
    void listen(const std::vector<std::uint32_t>& clients);
    std::vector<Window> read();

    X11::Desktop server_; ///< without a connection when there is none to use
    Atoms atoms_{};
    std::set<xcb_window_t> followed_; ///< the clients whose changes are heard
    std::vector<Window> windows_;     ///< those in sight, the uppermost first
    Observers observers_;
};

} // namespace kippo
