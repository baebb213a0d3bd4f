#pragma once

#include "App/DemoDirector.h"
#include "App/Panel.h"
#include "App/ProblemReport.h"
#include "App/Stores.h"
#include "Mascot/Coach.h"
#include "Notch/NotchController.h"
#include "Settings/HotKeyState.h"
#include "Support/SingleInstance.h"
#include "Support/TrayItem.h"
#include "Support/UrlOpener.h"

#include <random>

namespace kippo {

class AgentStore;
class Desktop;

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
        TrayItem* tray = nullptr;                    ///< nothing in a demo
        FullScreenWatcher* fullScreen = nullptr;     ///< nothing where the desktop does not tell
        About about{};                               ///< for a problem report
        std::mt19937 random{std::random_device{}()}; ///< which of several texts the mascot says
    };

    /// Nothing happens before `startApp`. `stores` and `panel` must outlive the application.
    AppDelegate(Stores& stores, Panel& panel, Ports ports);
    /// Ends in good order: the tray item goes, the keys are let go, a demo gives the real state back.
    ~AppDelegate();
    AppDelegate(const AppDelegate&) = delete;
    AppDelegate& operator=(const AppDelegate&) = delete;

    /// Shows what `agents` knows, and starts it with the rest; it must outlive the application. Comes before
    /// `startApp`; a demo follows none.
    void follow(AgentStore& agents);
    /// Does what other processes ask through `instance`, which must outlive the application.
    void answer(SingleInstance& instance);
    /// Brings up the notch and starts the stores; only the first call does.
    void startApp();
    /// `startApp`, and the welcome for whoever has not seen it.
    void finishLaunching();

    /// The list, and how many of it could be cleared.
    void showSessions(std::span<const AgentSession> sessions, std::size_t clearable = 0);
    /// A session came to need the person, or finished.
    void agentAlert(const AgentSession& session);
    /// A phase of the focus timer ended.
    void focusPhaseEnded(FocusStore::Phase ended, FocusStore::Phase next);

    /// Opens the notch on a page, as from the keyboard.
    void openTab(NotchTab tab);
    /// Starts a focus when nothing runs, else pauses or resumes.
    void toggleFocus();
    /// Begins the stretches, and keeps the notch open on them until they end.
    void startStretch();
    /// Does what an answer to the mascot's message asks for; the message goes.
    void perform(const MascotMessage::Action& action);
    /// Brings up the settings; `page` is a page's name, an empty one leaves the page as it is.
    void showSettings(const std::string& page = {});
    /// Brings up the welcome; the notch is hidden until `welcomeEnded`.
    void showWelcome();
    /// The person went through the welcome, or skipped it: it does not come by itself again.
    void welcomeEnded();

    /// Plays sample sessions in place of the real ones: once, or `endlessly`. The real ones go on unseen.
    void playDemo(bool endlessly = false);
    void stopDemo();
    bool isPlayingDemo() const { return demo_.isRunning(); }

    /// Has the mascot say `sentence` as soon as he can; without a mascot the settings come up, where it stands.
    void tell(const std::string& sentence);

    /// What a report of a problem tells; the person reads it before it goes anywhere.
    std::string reportText() const;
    /// Opens a letter with `reportText` in the person's mail program, for the person to send.
    std::expected<void, UrlOpener::Error> writeReport();
    /// `writeReport`, and where that fails the settings, which show the text.
    void reportProblem();
    void quit();

    /// Only after `startApp`.
    NotchController& notch() { return *notch_; }
    Panel& panel() { return panel_; }
    Stores& stores() { return stores_; }
    const HotKeyState& hotKeys() const { return hotKeyState_; }
    UserDefaults& defaults() { return ports_.defaults; }

    /// Shows the settings window on the page of this name.
    std::function<void(const std::string& page)> onShowSettings;
    /// Shows the welcome window; without one nobody is welcomed.
    std::function<void()> onShowWelcome;
    /// Ends the program.
    std::function<void()> onQuit;

private:
    void followAgents();
    void followFocus();
    void startCoach();
    void connectPages();
    void connectDesktop();
    void connectMascot();
    void connectNotch();
    void listenForAnswer();
    void showAll();
    void show(std::span<const AgentSession> sessions, std::optional<LiveSummary> lights, std::size_t clearable);
    void showDemo(const std::vector<AgentSession>& sessions);
    void say(const MascotMessage& message);
    void tellUntold();
    bool isUnsuitable() const;
    void holdOpen();
    void letGo();
    void updateLiveActivity();
    void updateTray();
    void syncHotKeys();
    void readSettings();
    void notchChanged();

    Stores& stores_;
    Panel& panel_;
    Ports ports_;
    AgentStore* agents_ = nullptr;
    DemoDirector demo_;
    std::optional<LiveSummary> lights_; ///< what the agents have for the wings
    bool started_ = false;
    bool isWelcoming_ = false;
    bool holdsOpen_ = false; ///< the panel is pinned by the application, not by the person
    bool isSpeaking_ = false;
    std::optional<MascotMessage> untold_; ///< until the notch is closed and to be seen
    std::optional<NotchController> notch_;
    std::optional<Coach> coach_;
    HotKeyState hotKeyState_;
    std::vector<Subscription> hotKeys_;     ///< empty while they are off
    std::optional<Subscription> answerKey_; ///< while the mascot waits for an answer
    Timer minute_;
    Timer lettingGo_;
    Subscription notchSubscription_;
    Subscription defaultsSubscription_;
    Subscription agentsSubscription_;
};

} // namespace kippo
