#include "Support/Places.h"

#include <cstdlib>
#include <string_view>

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

std::string inside(const std::string& folder, const std::string& home, std::string_view below) {
    if (!folder.empty()) {
        return folder + "/Kippo";
    }
    return home.empty() ? std::string{} : home + std::string{below} + "/Kippo";
}

} // namespace

Places Places::fromEnvironment() {
    Places places;
    places.home = absoluteVariable("HOME");
    places.supportFolder = inside(absoluteVariable("XDG_DATA_HOME"), places.home, "/.local/share");
    places.configFolder = inside(absoluteVariable("XDG_CONFIG_HOME"), places.home, "/.config");
    return places;
}

} // namespace kippo
