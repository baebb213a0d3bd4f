#pragma once

#include "App/AppDelegate.h"
#include "App/Prefs.h"
#include "Fakes/FakeDefaults.h"
#include "Fakes/FakeDesktop.h"
#include "Fakes/FakeHotKeys.h"
#include "Fakes/FakeIdleTime.h"
#include "Fakes/FakePanelWindow.h"
#include "Fakes/FakeScheduler.h"
#include "Fakes/FakeScreens.h"
#include "Fakes/FakeSounds.h"
#include "Fakes/FakeUrlOpener.h"

namespace kippo {

/// The application on fakes. Its window moves the stage, as the real one does.
struct PanelFixture {
    /// A window that passes on where the shape goes.
    struct StageWindow final : FakePanelWindow {
        explicit StageWindow(NotchStage& moved) : stage(moved) {}
        void show(const NotchShapes& shapes, NotchModel::Mode mode) override { stage.show(shapes, mode); }
        NotchStage& stage;
    };

    /// Settings that nobody has changed yet, except that the mascot does not mind the hour.
    struct Registration {
        explicit Registration(UserDefaults& defaults) {
            Prefs::registerDefaults(defaults);
            defaults.registerDefault("mascotNightOwl", false);
        }
    };

    explicit PanelFixture(std::optional<Size> notch = {})
        : screens({{.name = "eDP-1", .frame = {0, 0, 1600, 1000}, .isBuiltIn = true, .notch = notch}}) {
        application.startApp();
    }

    NotchModel::Mode mode() const { return panel.model.fields().mode; }

    FakeScheduler scheduler;
    FakeDefaults defaults;
    Registration registration{defaults};
    FakeScreens screens;
    FakePointer pointer;
    FakeDesktop desktop;
    FakeUrlOpener urls;
    FakeSounds sounds;
    FakeHotKeys hotKeys;
    FakeIdleTime idleTime;
    Stores stores{scheduler, defaults, sounds};
    Panel panel{stores, scheduler, defaults};
    StageWindow window{panel.stage};
    AppDelegate application{
        stores, panel, {scheduler, defaults, screens, pointer, window, desktop, urls, sounds, hotKeys, idleTime}};
};

} // namespace kippo
