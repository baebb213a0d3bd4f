#pragma once

#include "App/RealApplication.h"
#include "App/SettingsWindow.h"
#include "App/WelcomeWindow.h"
#include "Platform/Linux/XdgLoginItem.h"
#include "Support/Places.h"

namespace kippo {

/// The settings and the welcome on this desktop; they come up when the application asks for them.
class RealWindows {
public:
    /// All of it must outlive the windows.
    RealWindows(RealApplication& application, RealAgents& agents, Scheduler& scheduler, UserDefaults& defaults,
                const Places& places);
    RealWindows(const RealWindows&) = delete;
    RealWindows& operator=(const RealWindows&) = delete;

    /// Something that the person has to know about the settings, for when they look there.
    void setNotice(const std::string& sentence) { settings_.setNotice(QString::fromStdString(sentence)); }

private:
    PosixUserFiles files_;
    XdgLoginItem loginItem_;
    SettingsWindow settings_;
    WelcomeWindow welcome_;
};

} // namespace kippo
