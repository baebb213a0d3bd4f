#pragma once

#include "App/SettingsWindow.h"
#include "App/WelcomeWindow.h"

namespace kippo {

/// The settings window and the welcome on a home folder of their own, gone with the object: one agent is connected and
/// heard from, one only connected, one's settings file is no JSON, and some programs are watched. What is pressed in
/// them really happens, there.
class SettingsDemo {
public:
    /// The scenes' names: "settings-" and a page ("general", "notch", "agents", "alerts", "focus", "about"),
    /// "settings-guide" and "settings-change" (the agents page with a sheet open), "settings-report" and
    /// "settings-damaged", and "welcome-1" to "welcome-4".
    static bool isScene(const QString& scene);

    /// `defaults` gets the sample settings; it and the others must outlive the demo.
    SettingsDemo(Scheduler& scheduler, UserDefaults& defaults, Screens& screens, bool isDark);
    ~SettingsDemo();
    SettingsDemo(const SettingsDemo&) = delete;
    SettingsDemo& operator=(const SettingsDemo&) = delete;

    /// Opens the window of the scene, as in the scene.
    QQuickView& show(const QString& scene);

private:
    struct Parts;
    std::unique_ptr<Parts> parts_;
};

} // namespace kippo
