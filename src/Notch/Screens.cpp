#include "Notch/Screens.h"

#include <algorithm>

namespace kippo {

const Screen* chooseScreen(std::span<const Screen> screens, std::string_view display) {
    const auto first = [&](auto matches) -> const Screen* {
        const auto found = std::ranges::find_if(screens, matches);
        return found == screens.end() ? nullptr : &*found;
    };
    if (const Screen* named = first([&](const Screen& screen) { return screen.name == display; })) {
        return named;
    }
    if (const Screen* builtIn = first([](const Screen& screen) { return screen.isBuiltIn; })) {
        return builtIn;
    }
    if (const Screen* primary = first([](const Screen& screen) { return screen.isPrimary; })) {
        return primary;
    }
    return screens.empty() ? nullptr : &screens.front();
}

} // namespace kippo
