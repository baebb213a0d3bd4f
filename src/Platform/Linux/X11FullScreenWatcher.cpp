#include "Platform/Linux/X11FullScreenWatcher.h"

#include <algorithm>
#include <cmath>
#include <ranges>
#include <utility>

namespace kippo {

namespace {

constexpr std::uint32_t longestList = 1024;
/// On every desktop.
constexpr std::uint32_t allDesktops = 0xFFFFFFFF;
/// The first bit of an event's type says that another client sent it.
constexpr unsigned sentByServer = 0x7F;

bool contains(const std::vector<std::uint32_t>& list, std::uint32_t value) {
    return std::ranges::find(list, value) != list.end();
}

} // namespace

X11FullScreenWatcher::X11FullScreenWatcher() : server_(X11::connectToDesktop()) {
    if (!server_.connection) {
        return;
    }
    atoms_ = {.stacking = atom("_NET_CLIENT_LIST_STACKING"),
              .desktop = atom("_NET_CURRENT_DESKTOP"),
              .windowDesktop = atom("_NET_WM_DESKTOP"),
              .state = atom("_NET_WM_STATE"),
              .fullScreen = atom("_NET_WM_STATE_FULLSCREEN"),
              .hidden = atom("_NET_WM_STATE_HIDDEN"),
              .type = atom("_NET_WM_WINDOW_TYPE"),
              .desktopType = atom("_NET_WM_WINDOW_TYPE_DESKTOP"),
              .dockType = atom("_NET_WM_WINDOW_TYPE_DOCK")};
    const std::uint32_t changes = XCB_EVENT_MASK_PROPERTY_CHANGE;
    xcb_change_window_attributes(server_.connection.get(), server_.root, XCB_CW_EVENT_MASK, &changes);
    windows_ = read();
}

xcb_atom_t X11FullScreenWatcher::atom(std::string_view name) const {
    const auto reply = X11::ask(server_.connection.get(), xcb_intern_atom, xcb_intern_atom_reply, false,
                                static_cast<std::uint16_t>(name.size()), name.data());
    return reply ? reply->atom : XCB_NONE;
}

/// A property that is a list of numbers; empty when the window does not have it, or is gone.
std::vector<std::uint32_t> X11FullScreenWatcher::list(xcb_window_t window, xcb_atom_t property) const {
    const auto reply = X11::ask(server_.connection.get(), xcb_get_property, xcb_get_property_reply, false, window,
                                property, XCB_GET_PROPERTY_TYPE_ANY, 0, longestList);
    if (!reply || reply->format != 32) {
        return {};
    }
    const auto* first = static_cast<const std::uint32_t*>(xcb_get_property_value(reply.get()));
    return {first, first + xcb_get_property_value_length(reply.get()) / static_cast<int>(sizeof(std::uint32_t))};
}

/// Nothing when the window is not in sight, or is the desktop's own.
std::optional<X11FullScreenWatcher::Window>
X11FullScreenWatcher::look(xcb_window_t window, const std::vector<std::uint32_t>& currentDesktop) const {
    const auto desktop = list(window, atoms_.windowDesktop);
    const auto state = list(window, atoms_.state);
    const auto type = list(window, atoms_.type);
    const bool isElsewhere =
        !desktop.empty() && !currentDesktop.empty() && desktop[0] != allDesktops && desktop[0] != currentDesktop[0];
    if (isElsewhere || contains(state, atoms_.hidden) || contains(type, atoms_.desktopType) ||
        contains(type, atoms_.dockType)) {
        return std::nullopt;
    }
    xcb_connection_t* server = server_.connection.get();
    const auto size = X11::ask(server, xcb_get_geometry, xcb_get_geometry_reply, window);
    const auto corner = X11::ask(server, xcb_translate_coordinates, xcb_translate_coordinates_reply, window,
                                 server_.root, std::int16_t{0}, std::int16_t{0});
    if (!size || !corner) {
        return std::nullopt;
    }
    return Window{corner->dst_x, corner->dst_y, corner->dst_x + size->width, corner->dst_y + size->height,
                  contains(state, atoms_.fullScreen)};
}

/// Hears of the changes of every client, and forgets those that are gone.
void X11FullScreenWatcher::listen(const std::vector<std::uint32_t>& clients) {
    for (const xcb_window_t window : clients) {
        if (followed_.insert(window).second) {
            const std::uint32_t changes = XCB_EVENT_MASK_PROPERTY_CHANGE;
            xcb_change_window_attributes(server_.connection.get(), window, XCB_CW_EVENT_MASK, &changes);
        }
    }
    std::erase_if(followed_, [&clients](xcb_window_t window) { return !contains(clients, window); });
}

std::vector<X11FullScreenWatcher::Window> X11FullScreenWatcher::read() {
    const auto clients = list(server_.root, atoms_.stacking);
    listen(clients);
    const auto currentDesktop = list(server_.root, atoms_.desktop);
    std::vector<Window> windows;
    for (const xcb_window_t client : std::views::reverse(clients)) {
        if (const auto window = look(client, currentDesktop)) {
            windows.push_back(*window);
        }
    }
    xcb_flush(server_.connection.get());
    return windows;
}

bool X11FullScreenWatcher::fillsScreenAt(Point corner) const {
    // A screen's own corner is the same in logical and in device pixels.
    const auto x = static_cast<std::int32_t>(std::lround(corner.x));
    const auto y = static_cast<std::int32_t>(std::lround(corner.y));
    const auto covers = [x, y](const Window& window) {
        return window.left <= x && x < window.right && window.top <= y && y < window.bottom;
    };
    const auto uppermost = std::ranges::find_if(windows_, covers);
    return uppermost != windows_.end() && uppermost->isFullScreen;
}

Subscription X11FullScreenWatcher::observe(std::function<void()> callback) {
    return observers_.add(std::move(callback));
}

int X11FullScreenWatcher::descriptor() const {
    return server_.connection ? xcb_get_file_descriptor(server_.connection.get()) : -1;
}

bool X11FullScreenWatcher::dispatch() {
    if (!server_.connection) {
        return false;
    }
    bool changed = false;
    // Reading asks the server, and so may bring more events along: they are read before the descriptor is waited for.
    for (bool again = true; std::exchange(again, false);) {
        while (const X11::Owned<xcb_generic_event_t> event{xcb_poll_for_event(server_.connection.get())}) {
            const auto& change = reinterpret_cast<const xcb_property_notify_event_t&>(*event);
            const bool isProperty = (event->response_type & sentByServer) == XCB_PROPERTY_NOTIFY;
            again = again || (isProperty && (change.atom == atoms_.stacking || change.atom == atoms_.desktop ||
                                             change.atom == atoms_.windowDesktop || change.atom == atoms_.state));
        }
        if (again) {
            auto windows = read();
            changed = changed || windows != windows_;
            windows_ = std::move(windows);
        }
    }
    if (changed) {
        observers_.notify();
    }
    return xcb_connection_has_error(server_.connection.get()) == 0;
}

} // namespace kippo
