#include "Platform/Linux/X11Server.h"

namespace kippo::X11 {

Desktop connectToDesktop() {
    const char* wayland = std::getenv("WAYLAND_DISPLAY");
    if (wayland != nullptr && *wayland != '\0') {
        return {};
    }
    int screen = 0;
    Connection connection{xcb_connect(nullptr, &screen)};
    if (xcb_connection_has_error(connection.get()) != 0 || hasExtension(connection.get(), "XWAYLAND")) {
        return {};
    }
    xcb_screen_iterator_t screens = xcb_setup_roots_iterator(xcb_get_setup(connection.get()));
    for (int i = 0; i < screen && screens.rem > 1; ++i) {
        xcb_screen_next(&screens);
    }
    return {std::move(connection), screens.data->root};
}

bool hasExtension(xcb_connection_t* connection, std::string_view name) {
    const auto reply = ask(connection, xcb_query_extension, xcb_query_extension_reply,
                           static_cast<std::uint16_t>(name.size()), name.data());
    return reply && reply->present != 0;
}

} // namespace kippo::X11
