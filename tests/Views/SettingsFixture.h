#pragma once

#include "Fakes/AgentMachine.h"
#include "Fakes/FakeDesktopLook.h"
#include "Fakes/FakeLoginItem.h"
#include "Fakes/FakeScheduler.h"
#include "Fakes/FakeScreens.h"
#include "Fakes/UnchangedSettings.h"
#include "Settings/HotKeyState.h"

namespace kippo {

/// An agent store on fakes, for what settings do with it, and the desktop that their windows ask.
struct SettingsFixture : AgentMachine {
    std::string claudeFile() const { return home.path(".claude/settings.json"); }

    /// An event of the agent's hooks arrives now.
    void hear(HookAgent agent) {
        event(scheduler.now(), "SessionStart", "", "1", "/x", agent);
        store.readEvents(false);
    }

    FakeScheduler scheduler;
    FakeDefaults defaults = unchangedSettings();
    AgentStore store{home.places(), ports(scheduler, defaults)};
    FakeScreens screens{{{.name = "eDP-1", .frame = {0, 0, 1600, 1000}, .isBuiltIn = true}}};
    FakeDesktopLook look;
    FakeLoginItem loginItem;
    HotKeyState hotKeys;
};

} // namespace kippo
