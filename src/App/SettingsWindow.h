#pragma once

#include "Settings/Views/AboutViewModel.h"
#include "Settings/Views/AgentSettingsViewModel.h"
#include "Settings/Views/FocusSettingsViewModel.h"
#include "Settings/Views/HotKeysViewModel.h"
#include "Settings/Views/LoginViewModel.h"
#include "Settings/Views/PreferencesViewModel.h"
#include "Settings/Views/SoundsViewModel.h"
#include "Support/DesktopLook.h"

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
        LoginItem& loginItem;
        Sounds& sounds;
        Desktop& desktop;
        const HotKeyState& hotKeys;
        std::string version;
        ReportActions report;
    };

    explicit SettingsWindow(Ports ports);
    ~SettingsWindow();
    SettingsWindow(const SettingsWindow&) = delete;
    SettingsWindow& operator=(const SettingsWindow&) = delete;

    /// Opens it, or brings it to the front. `page` is the page's name; an empty one leaves the page as it is.
    void show(const QString& page = {});
    /// As `show`, with the report of a problem to be read and sent.
    void showReport();
    /// Something that the person has to know, above every page until it is put away.
    void setNotice(const QString& notice);
    /// Null while it is closed.
    QQuickView* view();

private:
    struct Opened;

    void open();

    Ports ports_;
    QString notice_;
    std::unique_ptr<Opened> opened_;
};

} // namespace kippo
