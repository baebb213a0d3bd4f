#pragma once

#include "Support/TrayItem.h"

namespace kippo {

class AppDelegate;

/// The menu of the tray item.
struct MenuBarContent {
    /// As things stand now; what has nothing to open is absent. The actions refer to `app`.
    static std::vector<MenuItem> items(AppDelegate& app);
};

} // namespace kippo
