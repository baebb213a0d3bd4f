#include "Notch/NotchModel.h"

#include "Support/UserDefaults.h"

#include <algorithm>

namespace kippo {

std::vector<NotchTab> enabledTabs(const UserDefaults& defaults) {
    struct Page {
        NotchTab tab;
        const char* setting; ///< nullptr: always there
    };
    static constexpr Page pages[] = {
        {NotchTab::home, "showHomeTab"},       {NotchTab::agents, nullptr}, {NotchTab::focus, "showFocusTab"},
        {NotchTab::clipboard, nullptr},        {NotchTab::notes, nullptr},  {NotchTab::music, "showMusicTab"},
        {NotchTab::revenue, "showRevenueTab"},
    };
    std::vector<NotchTab> tabs;
    for (const auto& [tab, setting] : pages) {
        if (!setting || defaults.get<bool>(setting)) {
            tabs.push_back(tab);
        }
    }
    return tabs;
}

bool hasPage(NotchTab tab) { return tab == NotchTab::agents || tab == NotchTab::focus; }

Seconds FocusActivity::remaining(Date now) const {
    const Seconds left = paused.value_or(endsAt ? *endsAt - now : Seconds{0});
    return std::max(left, Seconds{0});
}

void NotchModel::set(Fields fields) {
    if (fields == fields_) {
        return;
    }
    fields_ = std::move(fields);
    observers_.notify();
}

} // namespace kippo
