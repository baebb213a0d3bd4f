#include "Support/Places.h"

#include <cstdlib>

namespace kippo {

namespace {

std::string absoluteVariable(const char* name) {
    const char* value = std::getenv(name);
    std::string text = value ? value : "";
    if (!text.starts_with('/')) {
        return {};
    }
    while (text.size() > 1 && text.ends_with('/')) {
        text.pop_back();
    }
    return text;
}

/// The folder that `variable` names, else `below` in the home folder; empty without either.
std::string baseFolder(const char* variable, const std::string& home, const char* below) {
    std::string folder = absoluteVariable(variable);
    return folder.empty() && !home.empty() ? home + below : folder;
}

std::string kippoIn(const std::string& folder) { return folder.empty() ? std::string{} : folder + "/Kippo"; }

} // namespace

Places Places::fromEnvironment() {
    Places places;
    places.home = absoluteVariable("HOME");
    places.dataFolder = baseFolder("XDG_DATA_HOME", places.home, "/.local/share");
    places.cacheFolder = baseFolder("XDG_CACHE_HOME", places.home, "/.cache");
    places.supportFolder = kippoIn(places.dataFolder);
    places.configFolder = kippoIn(baseFolder("XDG_CONFIG_HOME", places.home, "/.config"));
    return places;
}

} // namespace kippo
