#pragma once

#include "Settings/Views/AgentSettingsViewModel.h"
#include "Settings/Views/FocusSettingsViewModel.h"
#include "Settings/Views/HotKeysViewModel.h"
#include "Settings/Views/LoginViewModel.h"
#include "Settings/Views/PreferencesViewModel.h"
#include "Settings/Views/WelcomeViewModel.h"
#include "Support/DesktopLook.h"

#include <QQuickView>
#include <memory>

namespace kippo {

/// The welcome: an ordinary window in the middle of the chosen display. Seen through, skipped or closed, it has ended.
class WelcomeWindow {
public:
    /// What it shows and changes. All of it must outlive the window.
    struct Ports {
        AgentStore& agents;
        Scheduler& scheduler;
        UserDefaults& defaults;
        Screens& screens;
        DesktopLook& look;
        LoginItem& loginItem;
        const HotKeyState& hotKeys;
        std::set<HookAgent> onMachine; ///< the agents that are there to be connected
    };

    explicit WelcomeWindow(Ports ports);
    ~WelcomeWindow();
    WelcomeWindow(const WelcomeWindow&) = delete;
    WelcomeWindow& operator=(const WelcomeWindow&) = delete;

    /// Opens it at its first step, or brings it to the front.
    void show();
    /// Null while it is closed.
    QQuickView* view();

    /// It is gone, by whichever way.
    std::function<void()> onEnded;

private:
    struct Opened;

    void open();
    void centre();

    Ports ports_;
    std::unique_ptr<Opened> opened_;
};

} // namespace kippo
