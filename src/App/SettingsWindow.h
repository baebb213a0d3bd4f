#pragma once

#include "Settings/Views/AgentSettingsViewModel.h"
#include "Settings/Views/PreferencesViewModel.h"

#include <QQuickView>
#include <memory>

namespace kippo {

/// The settings: an ordinary window of the desktop, made when it is asked for and gone when it is closed.
class SettingsWindow {
public:
    /// What it shows and changes. All of it must outlive the window.
    struct Ports {
        AgentStore& agents;
        Scheduler& scheduler;
        UserDefaults& defaults;
        Screens& screens;
        DesktopLook& look;
    };

    explicit SettingsWindow(Ports ports);
    ~SettingsWindow();
    SettingsWindow(const SettingsWindow&) = delete;
    SettingsWindow& operator=(const SettingsWindow&) = delete;

    /// Opens it, or brings it to the front. `page` is the page's name; an empty one leaves the page as it is.
    void show(const QString& page = {});
    /// Null while it is closed.
    QQuickView* view();

private:
    struct Opened;

    Ports ports_;
    std::unique_ptr<Opened> opened_;
};

} // namespace kippo
