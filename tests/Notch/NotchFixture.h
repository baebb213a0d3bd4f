#pragma once

#include "Fakes/FakePanelWindow.h"
#include "Fakes/FakeScheduler.h"
#include "Fakes/FakeScreens.h"
#include "Fakes/SampleSession.h"
#include "Fakes/UnchangedSettings.h"
#include "Notch/NotchController.h"

#include <gtest/gtest.h>

namespace kippo {

/// A notch on one screen of 1920 by 1080, with the settings that people have when they change none.
struct NotchFixture : testing::Test {
    using Mode = NotchModel::Mode;
    static constexpr Seconds moment{0.01};
    static constexpr Point onNotch{960, 5};
    static constexpr Point away{300, 700};

    static AgentSession session(AgentStatus status) { return sampleSession("s", std::move(status)); }

    static AgentsActivity oneWorking() {
        AgentsActivity activity;
        activity.working = 1;
        return activity;
    }

    FakeScheduler scheduler;
    FakeDefaults defaults = unchangedSettings();
    FakeScreens screens{{{.name = "DP-1", .frame = {0, 0, 1920, 1080}, .isPrimary = true}}};
    FakePointer pointer;
    FakePanelWindow window;
    NotchModel model;
    NotchController notch{model, scheduler, defaults, screens, pointer, window};

    Mode mode() const { return model.fields().mode; }
    bool speaks() const { return model.fields().mascot.has_value(); }
    void hover() {
        pointer.moveTo(onNotch);
        scheduler.advance(Seconds{0.08});
    }
};

} // namespace kippo
