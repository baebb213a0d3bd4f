#include "App/Prefs.h"

#include "Support/UserDefaults.h"

#include <array>
#include <utility>

namespace kippo::Prefs {

void registerDefaults(UserDefaults& defaults) {
    static const std::array<std::pair<std::string_view, DefaultsValue>, 27> registered{{
        {"showMenuBarIcon", true},
        {"display", "builtIn"},
        {"style", "black"},
        {"accent", "system"},
        {"openOnHover", true},
        {"showCopyPeek", true},
        {"rememberClips", true},
        {"hotKeysEnabled", true},
        {"clipboardPaused", false},
        {"showMusicTab", true},
        {"showRevenueTab", true},
        {"showLiveActivity", true},
        {"agentAlerts", true},
        {"agentSound", true},
        {"saleAlerts", true},
        {"showFocusTab", true},
        {"focusMinutes", std::int64_t{25}},
        {"shortBreakMinutes", std::int64_t{5}},
        {"longBreakMinutes", std::int64_t{15}},
        {"autoStartBreaks", true},
        {"mascotEnabled", true},
        {"mascotRoams", true},
        {"mascotNightOwl", true},
        {"mailSound", true},
        {"statusLights", true},
        {"showDemo", false},
        {"showHomeTab", true},
    }};
    for (const auto& [key, value] : registered) {
        defaults.registerDefault(key, value);
    }
}

} // namespace kippo::Prefs
