#pragma once

#include "Agents/AgentStore.h"
#include "App/Terminal/SessionList.h"
#include "Platform/Linux/FreedesktopTrash.h"
#include "Platform/Linux/InotifyFileWatcher.h"
#include "Platform/Linux/JsonUserDefaults.h"
#include "Platform/Linux/PollScheduler.h"
#include "Platform/Linux/ProcProcessLister.h"
#include "Platform/Posix/PosixProcessRunner.h"
#include "Platform/Posix/PosixUserFiles.h"
#include "Support/SerialQueue.h"

namespace kippo::Terminal {

/// The agent store as a terminal command needs it: on this machine's real ports, without threads, and changing nothing
/// of the user's.
class Onlooker {
public:
    Onlooker();

    /// The list, read once.
    SessionList look();
    /// Keeps the list current from now on, while the scheduler runs; `changed` is called after each change.
    void follow(std::function<void()> changed);
    /// What is known at present.
    SessionList list() const { return {store_.sessions(), store_.detached()}; }

    Date now() const { return scheduler_.now(); }
    PollScheduler& scheduler() { return scheduler_; }

private:
    PollScheduler scheduler_;
    Places places_ = Places::fromEnvironment();
    JsonUserDefaults defaults_;
    InlineSerialQueue queue_;
    ProcProcessLister lister_;
    InotifyFileWatcher files_;
    PosixUserFiles userFiles_;
    PosixProcessRunner runner_;
    FreedesktopTrash trash_{places_.dataFolder};
    AgentStore store_;
    Timer settings_;
    Subscription filesReady_;
    Subscription changes_;
};

} // namespace kippo::Terminal
