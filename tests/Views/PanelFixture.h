#pragma once

#include "App/AppDelegate.h"
#include "Fakes/FakeDesktop.h"
#include "Fakes/FakeDesktopLook.h"
#include "Fakes/FakeFullScreenWatcher.h"
#include "Fakes/FakeHotKeys.h"
#include "Fakes/FakeIdleTime.h"
#include "Fakes/FakePanelWindow.h"
#include "Fakes/FakeScheduler.h"
#include "Fakes/FakeScreens.h"
#include "Fakes/FakeSounds.h"
#include "Fakes/FakeTrayItem.h"
#include "Fakes/FakeUrlOpener.h"
#include "Samples.h"

#include <memory>

namespace kippo {

/// The application on fakes. Its window moves the stage, as the real one does.
struct PanelFixture {
    /// A window that passes on where the shape goes.
    struct StageWindow final : FakePanelWindow {
        explicit StageWindow(NotchStage& moved) : stage(moved) {}
        void show(const NotchShapes& shapes, NotchModel::Mode mode) override { stage.show(shapes, mode); }
        NotchStage& stage;
    };

    enum class Start { atOnce, later };

    explicit PanelFixture(std::optional<Size> notch = {}, Start start = Start::atOnce)
        : screens({{.name = "eDP-1", .frame = {0, 0, 1600, 1000}, .isBuiltIn = true, .notch = notch}}) {
        if (start == Start::atOnce) {
            application.startApp();
        }
    }

    NotchModel::Mode mode() const { return panel.model.fields().mode; }

    FakeScheduler scheduler;
    FakeDefaults defaults = [] {
        auto made = unchangedSettings();
        made.registerDefault("mascotNightOwl", false); // whatever the hour is
        return made;
    }();
    FakeScreens screens;
    FakePointer pointer;
    FakeDesktop desktop;
    FakeUrlOpener urls;
    FakeSounds sounds;
    FakeHotKeys hotKeys;
    FakeIdleTime idleTime;
    Stores stores{scheduler, defaults, sounds};
    FakeDesktopLook look;
    Panel panel{stores, scheduler, defaults, look};
    StageWindow window{panel.stage};
    FakeTrayItem tray;
    std::shared_ptr<void> followed; ///< what the application follows outlives it
    FakeFullScreenWatcher fullScreen;
    AppDelegate application{
        stores,
        panel,
        {scheduler, defaults, screens, pointer, window, desktop, urls, sounds, hotKeys, idleTime, &tray, &fullScreen}};
};

} // namespace kippo
