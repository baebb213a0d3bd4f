#pragma once

#include "Support/TrayItem.h"

#include <algorithm>

namespace kippo {

/// A tray in which the test clicks.
class FakeTrayItem final : public TrayItem {
public:
    void show(std::vector<MenuItem> wanted) override {
        isShown = true;
        menu = std::move(wanted);
    }
    void hide() override { isShown = false; }
    void setAttention(std::string reason) override { attention = std::move(reason); }

    /// The line with this text, or nullptr.
    const MenuItem* item(std::string_view text) const {
        const auto found = std::ranges::find(menu, text, &MenuItem::text);
        return isShown && found != menu.end() ? &*found : nullptr;
    }
    /// Chooses the line with this text; false when there is none or it is off.
    bool click(std::string_view text) const {
        const MenuItem* found = item(text);
        if (found == nullptr || !found->isEnabled || !found->action) {
            return false;
        }
        const auto action = found->action;
        action();
        return true;
    }

    bool isShown = false;
    std::vector<MenuItem> menu;
    std::string attention;
};

} // namespace kippo
