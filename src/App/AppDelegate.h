#pragma once

#include "App/Panel.h"
#include "App/Stores.h"
#include "Mascot/Coach.h"
#include "Notch/NotchController.h"
#include "Support/HotKeys.h"

namespace kippo {

class AgentStore;
class Desktop;
class UrlOpener;

/// The application: starts the stores and ties them to the notch. What happens in a store becomes a peek, a wing, a
/// sound, something that the mascot does or says. Knows ports only, so that a test drives all of it. Main queue only.
class AppDelegate {
public:
    /// What the application stands on. All of it must outlive the application.
    struct Ports {
        Scheduler& scheduler;
        UserDefaults& defaults;
        Screens& screens;
        Pointer& pointer;
        PanelWindow& window;
        Desktop& desktop;
        UrlOpener& urls;
        Sounds& sounds;
        HotKeys& hotKeys;
        IdleTime& idleTime;
    };

    /// Nothing happens before `startApp`. `stores` and `panel` must outlive the application.
    AppDelegate(Stores& stores, Panel& panel, Ports ports);
    AppDelegate(const AppDelegate&) = delete;
    AppDelegate& operator=(const AppDelegate&) = delete;

    /// Shows what `agents` knows, and starts it with the rest; it must outlive the application's event loop. Comes
    /// before `startApp`; a demo follows none.
    void follow(AgentStore& agents);
    /// Brings up the notch and starts the stores; only the first call does.
    void startApp();

    /// The list, and how many of it could be cleared.
    void showSessions(std::span<const AgentSession> sessions, std::size_t clearable = 0);
    /// A session came to need the person, or finished.
    void agentAlert(const AgentSession& session);

    /// Opens the notch on a page, as from the keyboard.
    void openTab(NotchTab tab);
    /// Starts a focus when nothing runs, else pauses or resumes.
    void toggleFocus();
    /// Begins the stretches, and opens the notch on them.
    void startStretch();
    /// Brings up the settings; `page` is a page's name, an empty one leaves the page as it is.
    void showSettings(const std::string& page = {});

    /// Only after `startApp`.
    NotchController& notch() { return *notch_; }
    Panel& panel() { return panel_; }
    Stores& stores() { return stores_; }

    /// The agents page came on screen, or left it.
    std::function<void(bool)> onAgentsPageVisible;
    /// Shows the settings window on the page of this name.
    std::function<void(const std::string& page)> onShowSettings;

private:
    void showAll();
    void show(std::span<const AgentSession> sessions, std::optional<LiveSummary> lights, std::size_t clearable);
    void connectPages();
    void connectDesktop();
    void react(const AgentSession& session);
    void updateLiveActivity();
    void syncHotKeys();
    void readSettings();
    void notchChanged();

    Stores& stores_;
    Panel& panel_;
    Ports ports_;
    AgentStore* agents_ = nullptr;
    std::optional<LiveSummary> lights_; ///< what the agents have for the wings
    bool started_ = false;
    std::optional<NotchController> notch_;
    std::vector<Subscription> hotKeys_; ///< empty while they are off
    Timer minute_;
    Subscription notchSubscription_;
    Subscription defaultsSubscription_;
    Subscription agentsSubscription_;
};

} // namespace kippo
