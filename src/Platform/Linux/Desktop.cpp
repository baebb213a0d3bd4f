#include "Platform/Linux/Desktop.h"

#include "Platform/Posix/Descriptor.h"

#include <cstdlib>
#include <cstring>
#include <sys/inotify.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/un.h>

namespace kippo::Desktop {

namespace {

std::string variable(const char* name) {
    const char* value = std::getenv(name);
    return value != nullptr ? value : "";
}

/// Whether somebody listens at a Unix socket; a `path` that begins with a zero byte is an abstract one.
bool answers(const std::string& path) {
    sockaddr_un address{};
    address.sun_family = AF_UNIX;
    if (path.size() >= sizeof address.sun_path) {
        return false;
    }
    std::memcpy(address.sun_path, path.data(), path.size());
    // An abstract name ends where the address does, a path with a zero byte.
    const auto length = offsetof(sockaddr_un, sun_path) + path.size() + (path.starts_with('\0') ? 0 : 1);
    const Descriptor socketEnd{socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC | SOCK_NONBLOCK, 0)};
    return connect(socketEnd.get(), reinterpret_cast<const sockaddr*>(&address), static_cast<socklen_t>(length)) == 0;
}

} // namespace

std::optional<std::string> displayName() {
    for (const auto* name : {"WAYLAND_DISPLAY", "DISPLAY"}) {
        if (auto value = variable(name); !value.empty()) {
            return value;
        }
    }
    return std::nullopt;
}

std::optional<bool> displayAnswers() {
    if (const auto name = variable("WAYLAND_DISPLAY"); !name.empty()) {
        return answers(name.starts_with('/') ? name : variable("XDG_RUNTIME_DIR") + "/" + name);
    }
    const auto name = variable("DISPLAY");
    const auto colon = name.rfind(':');
    if (colon == std::string::npos || (colon != 0 && name.substr(0, colon) != "unix")) {
        return std::nullopt;
    }
    const auto number = name.substr(colon + 1, name.find('.', colon) - colon - 1);
    const auto path = "/tmp/.X11-unix/X" + number;
    return answers(path) || answers(std::string(1, '\0') + path);
}

std::optional<std::string> busAddress() {
    if (auto address = variable("DBUS_SESSION_BUS_ADDRESS"); !address.empty()) {
        return address;
    }
    const auto path = variable("XDG_RUNTIME_DIR") + "/bus";
    struct stat state{};
    if (stat(path.c_str(), &state) == 0 && S_ISSOCK(state.st_mode)) {
        return "unix:path=" + path;
    }
    return std::nullopt;
}

bool canWatchFiles() {
    const Descriptor watcher{inotify_init1(IN_CLOEXEC)};
    return watcher && inotify_add_watch(watcher.get(), "/", IN_DELETE_SELF) >= 0;
}

} // namespace kippo::Desktop
