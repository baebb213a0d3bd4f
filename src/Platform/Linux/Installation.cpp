#include "Platform/Linux/Installation.h"

#include <climits>
#include <cstdlib>
#include <memory>
#include <unistd.h>

namespace kippo::Installation {

namespace {

/// `path` without its last component.
std::string folderOf(const std::string& path) {
    const auto slash = path.rfind('/');
    return slash == std::string::npos ? std::string{} : path.substr(0, slash);
}

bool isSet(const char* variable) {
    const char* value = std::getenv(variable);
    return value != nullptr && *value != '\0';
}

} // namespace

std::string executablePath() {
    std::string path(PATH_MAX, '\0');
    const auto size = readlink("/proc/self/exe", path.data(), path.size());
    path.resize(size > 0 ? static_cast<std::size_t>(size) : 0);
    return path;
}

bool isInBuildTree(const std::string& executable) {
    for (auto folder = folderOf(executable); !folder.empty(); folder = folderOf(folder)) {
        if (access((folder + "/CMakeCache.txt").c_str(), F_OK) == 0) {
            return true;
        }
    }
    return false;
}

std::optional<std::string> applicationPath(const std::string& installed) {
    for (const auto& candidate : {folderOf(executablePath()) + "/../libexec/kippo/kippo-app", installed}) {
        if (access(candidate.c_str(), X_OK) == 0) {
            return candidate;
        }
    }
    return std::nullopt;
}

std::optional<std::string> hookExecutable(const std::string& installed) {
    for (const auto& candidate : {folderOf(executablePath()) + "/../../bin/kippo", installed}) {
        const std::unique_ptr<char, decltype(&std::free)> real{realpath(candidate.c_str(), nullptr), std::free};
        if (real && access(real.get(), X_OK) == 0) {
            return real.get();
        }
    }
    return std::nullopt;
}

bool hasDisplay() { return isSet("DISPLAY") || isSet("WAYLAND_DISPLAY"); }

} // namespace kippo::Installation
