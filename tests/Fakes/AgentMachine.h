#pragma once

#include "Agents/AgentStore.h"
#include "Fakes/FakeProcessLister.h"
#include "Fakes/FakeProcessRunner.h"
#include "Fakes/FakeTrash.h"
#include "Fakes/FakeUserFiles.h"
#include "Fakes/PrivateHome.h"

#include <fmt/format.h>

namespace kippo {

/// All that an agent store stands on but the clock and the settings. Its event log lies in a home of its own.
struct AgentMachine {
    AgentStore::Ports ports(Scheduler& scheduler, UserDefaults& defaults) {
        return {.scheduler = scheduler,
                .defaults = defaults,
                .work = *work,
                .scans = *scans,
                .processes = processes,
                .files = nullptr,
                .userFiles = userFiles,
                .runner = runner,
                .trash = trash,
                .executable = executable,
                .isInstalled = isInstalled};
    }

    /// A hook writes a line at `now`; `more` are further members of it.
    void event(Date now, const std::string& name, const std::string& more = "", const std::string& session = "s",
               const std::string& folder = "/x", HookAgent agent = HookAgent::claude) const {
        home.append(home.places().eventLog(),
                    fmt::format("{{\"t\":{:.3f},\"e\":\"{}\",\"s\":\"{}\",\"a\":\"{}\",\"c\":\"{}\"{}}}\n",
                                unixSeconds(now), name, session, rawValue(agent), folder, more));
    }

    static ProcInfo process(Pid pid, Pid parent, double uptime, const std::string& command) {
        return {.pid = pid, .ppid = parent, .rssKB = 10, .cpu = 0, .uptime = uptime, .command = command};
    }

    PrivateHome home;
    InlineSerialQueue queue;
    SerialQueue* work = &queue;
    SerialQueue* scans = &queue;
    FakeProcessLister processes;
    FakeUserFiles userFiles;
    FakeProcessRunner runner;
    FakeTrash trash;
    std::string executable = "/opt/kippo";
    bool isInstalled = false;
};

} // namespace kippo
