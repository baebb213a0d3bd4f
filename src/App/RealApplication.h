#pragma once

#include "Agents/AgentStore.h"
#include "App/AppDelegate.h"
#include "Platform/Linux/DesktopSounds.h"
#include "Platform/Linux/FreedesktopTrash.h"
#include "Platform/Linux/InotifyFileWatcher.h"
#include "Platform/Linux/ProcProcessLister.h"
#include "Platform/Linux/X11FullScreenWatcher.h"
#include "Platform/Linux/X11HotKeys.h"
#include "Platform/Linux/XdgUrlOpener.h"
#include "Platform/Posix/PosixProcessRunner.h"
#include "Platform/Posix/PosixUserFiles.h"
#include "Platform/Posix/WorkerQueue.h"
#include "Platform/Qt/DesktopIdleTime.h"
#include "Platform/Qt/NotchWindow.h"
#include "Platform/Qt/QtDesktop.h"
#include "Platform/Qt/QtDesktopLook.h"
#include "Platform/Qt/QtScreens.h"

#include <QSocketNotifier>

namespace kippo {

/// The agents' store on this machine's real ports. The main queue is Qt's.
class RealAgents {
public:
    RealAgents(const Places& places, Scheduler& scheduler, UserDefaults& defaults);
    /// Does not wait for a scan that is under way.
    ~RealAgents();
    RealAgents(const RealAgents&) = delete;
    RealAgents& operator=(const RealAgents&) = delete;

    AgentStore& store() { return store_; }

private:
    AgentStore::Ports ports(Scheduler& scheduler, UserDefaults& defaults);

    ProcProcessLister processes_;
    PosixUserFiles userFiles_;
    PosixProcessRunner runner_;
    FreedesktopTrash trash_;
    InotifyFileWatcher files_;
    std::optional<QSocketNotifier> filesReady_;
    WorkerQueue work_;
    WorkerQueue scans_;
    AgentStore store_;
};

/// The application on this desktop: its window, what the window shows, and what it stands on.
class RealApplication {
public:
    /// What an application has and a demo does without.
    struct Extras {
        TrayItem* tray = nullptr;
    };

    RealApplication(Scheduler& scheduler, UserDefaults& defaults, Extras extras);
    RealApplication(const RealApplication&) = delete;
    RealApplication& operator=(const RealApplication&) = delete;

    AppDelegate& delegate() { return delegate_; }
    Screens& screens() { return screens_; }
    DesktopLook& look() { return look_; }
    Sounds& sounds() { return sounds_; }
    Desktop& desktop() { return desktop_; }
    QQuickView& view() { return window_.view(); }

private:
    QtDesktopLook look_;
    QtScreens screens_;
    X11FullScreenWatcher fullScreen_;
    std::optional<QSocketNotifier> fullScreenChanged_;
    QtDesktop desktop_;
    XdgUrlOpener urls_;
    DesktopSounds sounds_;
    X11HotKeys hotKeys_;
    std::optional<QSocketNotifier> keyPressed_;
    DesktopIdleTime idleTime_;
    Stores stores_;
    Panel panel_;
    NotchWindow window_;
    AppDelegate delegate_;
};

} // namespace kippo
