#pragma once

#include "App/Panel.h"
#include "Notch/NotchController.h"

namespace kippo {

class AgentStore;
class Desktop;
class UrlOpener;

/// Ties the stores to the notch: what happens in a store becomes a peek, a wing, a row.
class Application {
public:
    /// What the notch stands on. All of it, and `panel`, must outlive the application.
    struct Ports {
        Scheduler& scheduler;
        UserDefaults& defaults;
        Screens& screens;
        Pointer& pointer;
        PanelWindow& window;
        Desktop& desktop;
        UrlOpener& urls;
    };

    Application(Panel& panel, Ports ports);

    /// From now on shows what `agents` knows; it must outlive the application's event loop. Starting it is the
    /// caller's.
    void follow(AgentStore& agents);

    /// The list, and how many of it could be cleared.
    void showSessions(std::span<const AgentSession> sessions, std::size_t clearable = 0);
    /// A session came to need the person, or finished.
    void agentAlert(const AgentSession& session);

    NotchController& notch() { return notch_; }
    Panel& panel() { return panel_; }
    /// The agents page came on screen, or left it.
    std::function<void(bool)> onAgentsPageVisible;
    /// Brings up the settings window on the page of this name.
    std::function<void(const QString&)> showSettings;

private:
    void showAll(const AgentStore& agents);
    void show(std::span<const AgentSession> sessions, std::optional<LiveSummary> lights, std::size_t clearable);
    void connectDesktop();
    void updateLiveActivity();
    void readSettings();
    void notchChanged();

    Panel& panel_;
    Ports ports_;
    NotchController notch_;
    std::optional<LiveSummary> lights_; ///< what the agents have for the wings
    Timer minute_;
    Subscription notchSubscription_;
    Subscription defaultsSubscription_;
    Subscription agentsSubscription_;
};

} // namespace kippo
