#pragma once

#include "App/SettingsWindow.h"

namespace kippo {

/// The settings window on a home folder of its own, gone with the object: one agent is connected and heard from, one
/// only connected, one's settings file is no JSON, and some programs are watched. What is pressed in it really happens,
/// there.
class SettingsDemo {
public:
    /// The scenes' names: "settings-general", "settings-notch", "settings-agents", and "settings-guide" and
    /// "settings-change", the agents page with a sheet open.
    static bool isScene(const QString& scene);

    /// `defaults` gets the sample settings; it and the others must outlive the demo.
    SettingsDemo(Scheduler& scheduler, UserDefaults& defaults, Screens& screens, bool isDark);
    ~SettingsDemo();
    SettingsDemo(const SettingsDemo&) = delete;
    SettingsDemo& operator=(const SettingsDemo&) = delete;

    /// Opens the window, as in the scene.
    void show(const QString& scene);
    SettingsWindow& window();

private:
    struct Parts;
    std::unique_ptr<Parts> parts_;
};

} // namespace kippo
