#include "App/RealWindows.h"

#include "Platform/Linux/Installation.h"
#include "Settings/FoundAgents.h"

namespace kippo {

namespace {

/// Where all programs keep what is started at login: beside Kippo's own folder of settings.
std::string autostartFolder(const Places& places) {
    return places.configFolder.substr(0, places.configFolder.rfind('/')) + "/autostart";
}

std::set<HookAgent> agentsOnMachine(const Places& places) {
    const std::string searchPath = qEnvironmentVariable("PATH").toStdString();
    std::set<HookAgent> found;
    for (const HookAgent agent : allHookAgents) {
        if (isOnMachine(agent, places.home, searchPath)) {
            found.insert(agent);
        }
    }
    return found;
}

/// A report goes through the person's mail program.
ReportActions reportActions(AppDelegate& delegate) {
    return {.text = [&delegate] { return delegate.reportText(); },
            .send = [&delegate]() -> std::string {
                const auto opened = delegate.writeReport();
                return opened ? std::string{} : opened.error().sentence;
            }};
}

} // namespace

RealWindows::RealWindows(RealApplication& application, RealAgents& agents, Scheduler& scheduler, UserDefaults& defaults,
                         const Places& places)
    : loginItem_(files_, autostartFolder(places),
                 Installation::hookExecutable(KIPPO_INSTALLED_HOOK).value_or(std::string{})),
      settings_({.agents = agents.store(),
                 .scheduler = scheduler,
                 .defaults = defaults,
                 .screens = application.screens(),
                 .look = application.look(),
                 .loginItem = loginItem_,
                 .sounds = application.sounds(),
                 .desktop = application.desktop(),
                 .hotKeys = application.delegate().hotKeys(),
                 .version = KIPPO_VERSION,
                 .report = reportActions(application.delegate())}),
      welcome_({.agents = agents.store(),
                .scheduler = scheduler,
                .defaults = defaults,
                .screens = application.screens(),
                .look = application.look(),
                .loginItem = loginItem_,
                .hotKeys = application.delegate().hotKeys(),
                .onMachine = agentsOnMachine(places)}) {
    AppDelegate& delegate = application.delegate();
    delegate.onShowSettings = [this](const std::string& page) { settings_.show(QString::fromStdString(page)); };
    delegate.onShowWelcome = [this] { welcome_.show(); };
    welcome_.onEnded = [&delegate] { delegate.welcomeEnded(); };
}

} // namespace kippo
