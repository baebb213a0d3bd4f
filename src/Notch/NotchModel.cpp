#include "Notch/NotchModel.h"

#include "Support/UserDefaults.h"

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

void NotchModel::set(Fields fields) {
    if (fields == fields_) {
        return;
    }
    fields_ = std::move(fields);
    observers_.notify();
}

} // namespace kippo
