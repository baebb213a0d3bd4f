#include "Platform/Linux/Installation.h"

#include <climits>
#include <cstdlib>
#include <unistd.h>

namespace kippo::Installation {

namespace {

/// The folder of the running executable, links resolved; empty when it cannot be read.
std::string ownFolder() {
    std::string path(PATH_MAX, '\0');
    const auto size = readlink("/proc/self/exe", path.data(), path.size());
    path.resize(size > 0 ? static_cast<std::size_t>(size) : 0);
    const auto slash = path.rfind('/');
    return slash == std::string::npos ? std::string{} : path.substr(0, slash);
}

bool isSet(const char* variable) {
    const char* value = std::getenv(variable);
    return value != nullptr && *value != '\0';
}

} // namespace

std::optional<std::string> applicationPath(const std::string& installed) {
    for (const auto& candidate : {ownFolder() + "/../libexec/kippo/kippo-app", installed}) {
        if (access(candidate.c_str(), X_OK) == 0) {
            return candidate;
        }
    }
    return std::nullopt;
}

bool hasDisplay() { return isSet("DISPLAY") || isSet("WAYLAND_DISPLAY"); }

} // namespace kippo::Installation
