#pragma once

#include "Agents/AgentStore.h"
#include "App/Prefs.h"
#include "Fakes/FakeDefaults.h"
#include "Fakes/FakeProcessLister.h"
#include "Fakes/FakeProcessRunner.h"
#include "Fakes/FakeScheduler.h"
#include "Fakes/FakeScreens.h"
#include "Fakes/FakeTrash.h"
#include "Fakes/FakeUserFiles.h"
#include "Fakes/PrivateHome.h"
#include "Support/DesktopLook.h"

namespace kippo {

/// A look that the test chooses.
class FakeDesktopLook final : public DesktopLook {
public:
    bool isDark() const override { return isDark_; }
    std::optional<std::uint32_t> accent() const override { return accent_; }
    [[nodiscard]] Subscription observe(std::function<void()> callback) override {
        return observers_.add(std::move(callback));
    }
    void set(bool isDark) {
        isDark_ = isDark;
        observers_.notify();
    }
    void setAccent(std::uint32_t accent) {
        accent_ = accent;
        observers_.notify();
    }

private:
    bool isDark_ = false;
    std::optional<std::uint32_t> accent_;
    Observers observers_;
};

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
