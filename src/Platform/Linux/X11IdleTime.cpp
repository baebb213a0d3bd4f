#include "Platform/Linux/X11IdleTime.h"

#include <chrono>
#include <xcb/screensaver.h>

namespace kippo {

X11IdleTime::X11IdleTime() : server_(X11::connectToDesktop()) {
    if (server_.connection && !X11::hasExtension(server_.connection.get(), "MIT-SCREEN-SAVER")) {
        server_.connection.reset();
    }
}

std::optional<Seconds> X11IdleTime::sinceLastInput() {
    if (!server_.connection) {
        return std::nullopt;
    }
    const auto info =
        X11::ask(server_.connection.get(), xcb_screensaver_query_info, xcb_screensaver_query_info_reply, server_.root);
    if (!info) {
        return std::nullopt;
    }
    return std::chrono::milliseconds{info->ms_since_user_input};
}

} // namespace kippo
