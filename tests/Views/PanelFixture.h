#pragma once

#include "App/Application.h"
#include "App/Prefs.h"
#include "Fakes/FakeDefaults.h"
#include "Fakes/FakeDesktop.h"
#include "Fakes/FakePanelWindow.h"
#include "Fakes/FakeScheduler.h"
#include "Fakes/FakeScreens.h"
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

    explicit PanelFixture(std::optional<Size> notch = {})
        : screens({{.name = "eDP-1", .frame = {0, 0, 1600, 1000}, .isBuiltIn = true, .notch = notch}}) {
        Prefs::registerDefaults(defaults);
        defaults.registerDefault("mascotNightOwl", false);
        application.emplace(panel, Application::Ports{scheduler, defaults, screens, pointer, window, desktop, urls});
    }

    NotchModel::Mode mode() const { return panel.model.fields().mode; }

    FakeScheduler scheduler;
    FakeDefaults defaults;
    FakeScreens screens;
    FakePointer pointer;
    FakeDesktop desktop;
    FakeUrlOpener urls;
    Panel panel{scheduler};
    StageWindow window{panel.stage};
    std::optional<Application> application;
};

} // namespace kippo
