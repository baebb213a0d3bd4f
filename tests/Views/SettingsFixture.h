#pragma once

#include "Agents/AgentStore.h"
#include "App/Prefs.h"
#include "Fakes/FakeDefaults.h"
#include "Fakes/FakeDesktopLook.h"
#include "Fakes/FakeProcessLister.h"
#include "Fakes/FakeProcessRunner.h"
#include "Fakes/FakeScheduler.h"
#include "Fakes/FakeScreens.h"
#include "Fakes/FakeTrash.h"
#include "Fakes/FakeUserFiles.h"
#include "Fakes/PrivateHome.h"

namespace kippo {

/// An agent store on fakes, for what settings do with it. The event log lies in a home of its own.
struct SettingsFixture {
    SettingsFixture() { Prefs::registerDefaults(defaults); }

    Places places() const { return privateHome.places(); }
    AgentStore::Ports ports() {
        return {.scheduler = scheduler,
                .defaults = defaults,
                .work = work,
                .scans = work,
                .processes = lister,
                .files = nullptr,
                .userFiles = files,
                .runner = runner,
                .trash = trash,
                .executable = "/usr/bin/kippo"};
    }
    std::string claudeFile() const { return home + "/.claude/settings.json"; }

    /// An event of the agent's hooks arrives now.
    void hear(HookAgent agent) {
        privateHome.append(".local/share/Kippo/agent-events.jsonl",
                           "{\"t\":" + std::to_string(unixSeconds(scheduler.now())) +
                               ",\"e\":\"SessionStart\",\"s\":\"1\",\"a\":\"" + std::string{rawValue(agent)} + "\"}\n");
        store.readEvents(false);
    }
    static ProcInfo process(Pid pid, std::string command) {
        ProcInfo made;
        made.pid = pid;
        made.command = std::move(command);
        return made;
    }

    PrivateHome privateHome;
    std::string home = privateHome.path();
    FakeScheduler scheduler;
    FakeDefaults defaults;
    FakeProcessLister lister;
    FakeUserFiles files;
    FakeProcessRunner runner;
    FakeTrash trash;
    InlineSerialQueue work;
    AgentStore store{places(), ports()};
};

} // namespace kippo
