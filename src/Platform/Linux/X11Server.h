#pragma once

#include <cstdlib>
#include <memory>
#include <string_view>
#include <type_traits>
#include <xcb/xcb.h>

/// What every client of an X server needs.
namespace kippo::X11 {

struct Free {
    void operator()(void* memory) const { std::free(memory); }
};
template <typename T> using Owned = std::unique_ptr<T, Free>;

/// The reply to `request`, null on an error: windows of other programs may vanish at any time.
template <typename Request, typename Reply, typename... Arguments>
auto ask(xcb_connection_t* connection, Request request, Reply reply, Arguments... arguments) {
    auto* answer = reply(connection, request(connection, arguments...), nullptr);
    return Owned<std::remove_pointer_t<decltype(answer)>>(answer);
}

struct Disconnect {
    void operator()(xcb_connection_t* connection) const { xcb_disconnect(connection); }
};
using Connection = std::unique_ptr<xcb_connection_t, Disconnect>;

/// A connection to a server that knows of all the input of its desktop, and the root window there. Null without a
/// server, and under Wayland, where one knows of the input to X windows alone.
struct Desktop {
    Connection connection;
    xcb_window_t root = XCB_NONE;
};
Desktop connectToDesktop();

bool hasExtension(xcb_connection_t* connection, std::string_view name);

} // namespace kippo::X11
