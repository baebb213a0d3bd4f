#pragma once

#include <functional>
#include <string>
#include <vector>

namespace kippo {

/// One line of a menu. The texts are plain: no character of them marks a mnemonic.
struct MenuItem {
    std::string text{};
    std::string shortcut{}; ///< for show, such as "Control+Alt+A"; empty for none
    bool isCheckable = false;
    bool isChecked = false;
    bool isEnabled = true;
    bool isSeparator = false; ///< a line between groups; then all else is meaningless
    std::function<void()> action{};
};

/// The small symbol among those of the desktop's own, with a menu. Abstract because each desktop has its own way; the
/// real one is StatusNotifierTray. Where the desktop has no place for such symbols nothing is shown and nothing fails;
/// when it gets one later, the item is there.
class TrayItem {
public:
    virtual ~TrayItem() = default;
    /// Shows the item with this menu. While it is shown, replaces the menu; one that is the same but for its actions
    /// costs nothing.
    virtual void show(std::vector<MenuItem> menu) = 0;
    virtual void hide() = 0;
    /// What waits for the person, such as "Claude Code needs you", for the desktop to bring the item forward; empty for
    /// nothing. Kept while the item is hidden.
    virtual void setAttention(std::string reason) = 0;

    /// The person clicked the item itself, on the main queue. Some desktops open the menu instead.
    std::function<void()> onActivate;
};

} // namespace kippo
