#include "App/MenuBarContent.h"

#include "App/AppDelegate.h"

#include <algorithm>
#include <fmt/format.h>

namespace kippo {

namespace {

/// The key of the desktop that does the same, unless it is not ours.
std::string shortcut(const HotKeyState& hotKeys, char letter) {
    const auto& records = hotKeys.records();
    const bool isHeld = std::ranges::any_of(records, [letter](const HotKeyRecord& record) {
        return record.keys.letter == letter && record.state == HotKeyRecord::State::held;
    });
    return isHeld ? fmt::format("Control+Alt+{}", letter) : std::string{};
}

} // namespace

std::vector<MenuItem> MenuBarContent::items(AppDelegate& app) {
    const MenuItem separator{.isSeparator = true};
    std::vector<MenuItem> items;
    items.push_back({.text = "Open Agents", .shortcut = shortcut(app.hotKeys(), 'A'), .action = [&app] {
                         app.openTab(NotchTab::agents);
                     }});
    items.push_back({.text = "Start or Pause Focus", .shortcut = shortcut(app.hotKeys(), 'P'), .action = [&app] {
                         app.toggleFocus();
                     }});
    if (app.defaults().get<bool>("showDemo")) {
        if (app.isPlayingDemo()) {
            items.push_back({.text = "Stop Demo", .action = [&app] { app.stopDemo(); }});
        } else {
            items.push_back({.text = "Play Demo", .action = [&app] { app.playDemo(); }});
        }
    }
    items.push_back(separator);
    items.push_back({.text = "Report a Problem…", .action = [&app] { app.reportProblem(); }});
    items.push_back({.text = "Settings", .shortcut = "Control+,", .action = [&app] { app.showSettings(); }});
    items.push_back({.text = "Quit Kippo", .shortcut = "Control+Q", .action = [&app] { app.quit(); }});
    return items;
}

} // namespace kippo
