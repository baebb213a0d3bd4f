#include "Fakes/AgentMachine.h"
#include "Fakes/FakeSingleInstance.h"
#include "PanelFixture.h"
#include "Samples.h"
#include "Support/LocalTime.h"

#include <fmt/format.h>
#include <gmock/gmock.h>

namespace kippo {
namespace {

using Mode = NotchModel::Mode;
using Phase = FocusStore::Phase;
using testing::Test;

/// Agents that write their events into a log, and the store that follows them.
struct FollowedAgents : AgentMachine {
    FollowedAgents(Scheduler& scheduler, UserDefaults& defaults) : store(home.places(), ports(scheduler, defaults)) {}

    AgentStore store;
};

/// The whole application, from ten in the morning.
struct AppDelegateTest : Test, PanelFixture {
    AppDelegateTest() : PanelFixture({}, Start::later) {
        scheduler.setClock(atHour(scheduler.now(), 10));
        defaults.set("onboarded", true);
        machine = std::make_shared<FollowedAgents>(scheduler, defaults);
        followed = machine;
        agents = &machine->store;
        application.follow(*agents);
        application.finishLaunching();
        event("SessionStart");
        scheduler.advance(Seconds{5});
        application.notch().hideMascot();
    }

    void event(const std::string& name, const std::string& more = "") {
        machine->event(scheduler.now(), name, more, "s", "/home/dev/secret");
        scheduler.advance(Seconds{1});
    }
    /// A turn that is worth telling of.
    void finishTurn() {
        event("UserPromptSubmit", R"(,"p":"Fix the login")");
        scheduler.advance(Seconds{30});
        event("Stop");
    }
    const std::optional<MascotMessage>& message() const { return panel.model.fields().mascot; }
    MascotState mascot() const { return stores.mascotStage.floor().state; }
    template <typename Activity> bool showsWing() const {
        const auto& live = panel.model.fields().live;
        return live && std::holds_alternative<Activity>(*live);
    }

    std::shared_ptr<FollowedAgents> machine;
    AgentStore* agents = nullptr;
};

TEST_F(AppDelegateTest, AnnouncesForAsLongAsItMattersWithItsSound) {
    struct {
        AgentStatus status;
        Seconds shown;
        Sound sound;
    } const cases[] = {{AgentStatus::done(), Seconds{2.5}, Sound::glass},
                       {AgentStatus::needsYou("?"), Seconds{4}, Sound::funk}};
    for (const auto& [status, shown, sound] : cases) {
        application.agentAlert(sampleSession("a", status));
        scheduler.advance(shown - Seconds{0.1});
        EXPECT_EQ(mode(), Mode::peek);
        scheduler.advance(Seconds{0.2});
        EXPECT_EQ(mode(), Mode::collapsed);
        EXPECT_EQ(sounds.played.back(), sound);
    }
}

TEST_F(AppDelegateTest, AnAgentsWorkPassesThroughTheNotch) {
    event("UserPromptSubmit");
    EXPECT_TRUE(showsWing<AgentsActivity>());
    scheduler.advance(Seconds{30});
    event("Stop");
    EXPECT_EQ(mode(), Mode::peek);
    EXPECT_EQ(mascot(), MascotState::cheer);
    scheduler.advance(Seconds{20});
    EXPECT_EQ(mode(), Mode::collapsed);
    EXPECT_EQ(sounds.played, std::vector{Sound::glass});

    event("PermissionRequest", R"(,"tool":"Bash")");
    EXPECT_EQ(mode(), Mode::peek);
    EXPECT_EQ(tray.attention, "Claude Code needs you");
    scheduler.advance(Seconds{10});
    EXPECT_EQ(sounds.played, (std::vector{Sound::glass, Sound::funk}));
    event("PostToolUse", R"(,"tool":"Bash")");
    EXPECT_EQ(tray.attention, "");

    // Without its sound, then without a word. The mascot reacts all the same.
    defaults.set("agentSound", false);
    event("Stop");
    EXPECT_EQ(mode(), Mode::peek);
    scheduler.advance(Seconds{10});
    defaults.set("agentAlerts", false);
    defaults.set("agentSound", true);
    event("PermissionRequest", R"(,"tool":"Bash")");
    EXPECT_EQ(mode(), Mode::live);
    EXPECT_EQ(mascot(), MascotState::panic);
    EXPECT_EQ(sounds.played.size(), 2U);
}

TEST_F(AppDelegateTest, OnlyWhatCannotWaitWakesTheMascot) {
    stores.mascotStage.setState(MascotState::sleep);
    finishTurn();
    EXPECT_EQ(mascot(), MascotState::sleep);
    event("PermissionRequest", R"(,"tool":"Bash")");
    EXPECT_EQ(mascot(), MascotState::panic);
}

TEST_F(AppDelegateTest, ASecondStartDoesNothing) {
    const auto pending = scheduler.pendingCount();
    application.startApp();
    EXPECT_EQ(scheduler.pendingCount(), pending);
    hotKeys.press('P');
    EXPECT_EQ(stores.focus.phase(), Phase::focus);
}

TEST_F(AppDelegateTest, HotKeysFollowTheirSetting) {
    using State = HotKeyRecord::State;
    hotKeys.press('A');
    EXPECT_EQ(mode(), Mode::expanded);
    EXPECT_TRUE(agents->isVisible());
    hotKeys.press('A');
    EXPECT_EQ(mode(), Mode::collapsed);
    EXPECT_FALSE(agents->isVisible());
    EXPECT_EQ(tray.item("Open Agents")->shortcut, "Control+Alt+A");

    defaults.set("hotKeysEnabled", false);
    EXPECT_FALSE(hotKeys.isGrabbed('A') || hotKeys.isGrabbed('P'));
    EXPECT_EQ(application.hotKeys().records().at(0).state, State::off);
    hotKeys.takenByAnother = {'P'};
    defaults.set("hotKeysEnabled", true);
    EXPECT_TRUE(hotKeys.isGrabbed('A'));
    EXPECT_EQ(application.hotKeys().records().at(1).state, State::takenByAnother);
    EXPECT_EQ(tray.item("Start or Pause Focus")->shortcut, "");
}

TEST_F(AppDelegateTest, APhaseOfFocusEndsInWordsOrOnThePage) {
    stores.focus.begin(Phase::focus, 25);
    EXPECT_TRUE(showsWing<FocusActivity>());
    scheduler.advance(Seconds{25 * 60 + 1});
    EXPECT_EQ(sounds.played, std::vector{Sound::hero});
    ASSERT_TRUE(message());
    EXPECT_EQ(message()->secondary->title, "Just rest"); // the break runs already
    panel.mascot.answerSecondary();
    EXPECT_FALSE(message());

    defaults.set("mascotEnabled", false);
    scheduler.advance(Seconds{5 * 60});
    EXPECT_EQ(sounds.played.back(), Sound::blow);
    EXPECT_FALSE(message());
    EXPECT_EQ(mode(), Mode::expanded);
    EXPECT_EQ(panel.model.fields().tab, NotchTab::focus);
    // Long enough to be read, though the pointer is elsewhere.
    scheduler.advance(Seconds{4});
    EXPECT_EQ(mode(), Mode::expanded);
    scheduler.advance(Seconds{3});
    EXPECT_NE(mode(), Mode::expanded);
}

TEST_F(AppDelegateTest, AnswersToTheMascotAreActedOn) {
    using Action = MascotMessage::Action;
    application.perform({Action::Case::startFocus, 40});
    EXPECT_EQ(stores.focus.total(), Seconds{2400});
    EXPECT_EQ(defaults.get<std::int64_t>("focusMinutes"), 40);
    application.perform({Action::Case::startBreak});
    EXPECT_TRUE(FocusStore::isBreak(stores.focus.phase()));
    application.perform({Action::Case::muteToday});
    application.perform({Action::Case::goodNight});
    const auto quiet = Coach::quiet(defaults, scheduler.now());
    EXPECT_TRUE(quiet.until && quiet.nightUntil);
}

TEST_F(AppDelegateTest, WhatThePersonHasToKnowWaitsUntilItIsSeen) {
    application.openTab(NotchTab::agents);
    application.tell("The settings are damaged.");
    scheduler.advance(Seconds{120});
    EXPECT_FALSE(panel.mascot.speaks());
    application.notch().collapse();
    scheduler.advance(Seconds{61});
    EXPECT_EQ(panel.mascot.text(), "The settings are damaged.");
    scheduler.advance(Seconds{300});
    EXPECT_FALSE(panel.mascot.speaks()) << "once";
}

TEST_F(AppDelegateTest, TheNotchStaysOpenForTheStretches) {
    defaults.set("showFocusTab", false);
    stores.focus.begin(Phase::focus, 25);
    application.perform({MascotMessage::Action::Case::stretch});
    EXPECT_EQ(stores.focus.phase(), Phase::shortBreak) << "the break that is due";
    scheduler.advance(Seconds{70});
    EXPECT_EQ(panel.model.fields().tab, NotchTab::focus);
    EXPECT_EQ(mode(), Mode::expanded);
    EXPECT_EQ(stores.stretch.index(), 2);
    stores.stretch.end();
    scheduler.advance(Seconds{1});
    EXPECT_EQ(mode(), Mode::live) << "closed, but the break goes on";

    // A pin of the person's own stays.
    application.openTab(NotchTab::focus);
    application.notch().setPinned(true);
    const auto endsAt = stores.focus.endsAt();
    application.startStretch();
    EXPECT_EQ(stores.focus.endsAt(), endsAt) << "the break goes on";
    stores.stretch.end();
    EXPECT_TRUE(panel.model.fields().isPinned);
}

TEST_F(AppDelegateTest, ADayEndsAndAnotherBegins) {
    defaults.set("mascotNightOwl", true);
    stores.focus.begin(Phase::focus, 1);
    scheduler.advance(Seconds{61});
    stores.focus.reset();
    EXPECT_EQ(stores.focus.completedToday(), 1);
    application.perform({MascotMessage::Action::Case::muteToday});

    // He goes to bed in the wing, and is not spoken out of it today.
    idleTime.idle = Seconds{0};
    scheduler.setClock(atHour(scheduler.now(), 23) - Seconds{30});
    scheduler.advance(Seconds{100});
    EXPECT_TRUE(showsWing<SleepingActivity>());
    ASSERT_TRUE(stores.mascotStage.wing());
    scheduler.setClock(startOfLocalDay(scheduler.now(), 1) - Seconds{5});
    scheduler.advance(Seconds{4});
    EXPECT_FALSE(message());

    // Midnight: a new count, and whoever still works is sent to bed.
    for (int tick = 0; tick < 12 && !message(); ++tick) {
        scheduler.advance(Seconds{5});
    }
    ASSERT_TRUE(message());
    EXPECT_TRUE(message()->wakeUp);
    EXPECT_NE(stores.mascotStage.wing()->state, MascotState::sleep);
    scheduler.advance(Seconds{20});
    EXPECT_EQ(stores.mascotStage.wing()->state, MascotState::sleep);

    scheduler.advance(Seconds{60});
    EXPECT_EQ(stores.focus.completedToday(), 0);

    // An agent at work takes the wing from him.
    event("UserPromptSubmit");
    EXPECT_FALSE(stores.mascotStage.wing());
    event("Stop");
    scheduler.setClock(atHour(scheduler.now(), 5));
    scheduler.advance(Seconds{61});
    EXPECT_EQ(mode(), Mode::collapsed);
}

TEST_F(AppDelegateTest, TheCoachWaitsForAGoodMoment) {
    idleTime.idle = Seconds{0};
    fullScreen.fill(Point{0, 0});
    scheduler.advance(Seconds{7200});
    EXPECT_FALSE(message());
    fullScreen.fill({});
    application.showWelcome();
    scheduler.advance(Seconds{120});
    EXPECT_FALSE(message());
    EXPECT_FALSE(window.isVisible);
    application.welcomeEnded();
    EXPECT_TRUE(window.isVisible);
    scheduler.advance(Seconds{31});
    EXPECT_TRUE(message());
}

TEST_F(AppDelegateTest, ADemoTakesNothingFromAnybody) {
    event("UserPromptSubmit");
    stores.focus.begin(Phase::focus, 10);
    EXPECT_FALSE(tray.item("Play Demo"));
    defaults.set("showDemo", true);
    ASSERT_TRUE(tray.click("Play Demo"));
    scheduler.advance(Seconds{5});
    ASSERT_EQ(agents->sessions().size(), 1U);
    EXPECT_EQ(agents->sessions().at(0).id, "work");
    EXPECT_GT(stores.focus.total(), Seconds{600});
    // A sample's process id may be somebody's.
    panel.agents.onStop(*agents->sessions().at(0).rootPID);
    EXPECT_TRUE(machine->processes.terminated.empty());

    ASSERT_TRUE(tray.click("Stop Demo"));
    EXPECT_EQ(agents->sessions().at(0).id, "s");
    EXPECT_EQ(stores.focus.total(), Seconds{600});
    EXPECT_FALSE(application.isPlayingDemo());

    // By itself it ends after one round.
    application.playDemo();
    scheduler.advance(Seconds{120});
    EXPECT_FALSE(application.isPlayingDemo());
    EXPECT_EQ(agents->sessions().at(0).id, "s");
}

TEST_F(AppDelegateTest, TheMenuLeadsEverywhere) {
    std::vector<std::string> shown;
    bool hasQuit = false;
    application.onShowSettings = [&](const std::string& page) { shown.push_back(page); };
    application.onQuit = [&] { hasQuit = true; };
    ASSERT_TRUE(tray.click("Open Agents"));
    EXPECT_EQ(mode(), Mode::expanded);
    ASSERT_TRUE(tray.click("Settings"));
    EXPECT_EQ(mode(), Mode::collapsed);
    ASSERT_TRUE(tray.click("Quit Kippo"));
    EXPECT_TRUE(hasQuit);
    EXPECT_FALSE(tray.item("Open Clipboard"));
    defaults.set("showMenuBarIcon", false);
    EXPECT_FALSE(tray.isShown);

    FakeSingleInstance instance;
    application.answer(instance);
    instance.onOpenSettings("Agents");
    EXPECT_EQ(shown, (std::vector<std::string>{"", "Agents"}));
    EXPECT_TRUE(instance.onOpenPage("focus"));
    EXPECT_EQ(panel.model.fields().tab, NotchTab::focus);
    EXPECT_EQ(instance.onOpenPage("revenue").error(), "There is no page \"revenue\".");
    EXPECT_TRUE(instance.onFocus("start", 10));
    EXPECT_EQ(stores.focus.total(), Seconds{600});
}

TEST_F(AppDelegateTest, AReportTellsNothingPrivate) {
    agents->watch("/home/dev/bin/my agent");
    agents->setVisible(AgentKind::codex, false);
    finishTurn();
    scheduler.advance(Seconds{120});
    ASSERT_TRUE(tray.click("Report a Problem…"));
    const std::string text = application.reportText();
    EXPECT_THAT(text, testing::HasSubstr("Claude Code: not connected, last event 2 min ago, sessions: Done\n"));
    EXPECT_THAT(text, testing::HasSubstr("Codex: not connected, hidden, no event, no sessions\n"));
    EXPECT_THAT(text, testing::HasSubstr("\nmy agent: "));
    for (const std::string& secret : std::vector<std::string>{"login", "secret", "/home", machine->home.path()}) {
        EXPECT_THAT(text, testing::Not(testing::HasSubstr(secret)));
    }
    ASSERT_EQ(urls.opened.size(), 1U);
    EXPECT_TRUE(urls.opened[0].starts_with("mailto:?subject=Kippo%20problem&body=%0D%0A%0D%0AKippo%20"));
}

TEST(WelcomeTest, MeetsWhoeverIsNew) {
    PanelFixture fixture{{}, PanelFixture::Start::later};
    int welcomes = 0;
    fixture.application.onShowWelcome = [&] { ++welcomes; };
    fixture.application.finishLaunching();
    fixture.application.openTab(NotchTab::agents);
    EXPECT_EQ(fixture.mode(), Mode::collapsed);
    fixture.application.welcomeEnded();
    fixture.application.finishLaunching();
    EXPECT_EQ(welcomes, 1);
}

TEST_F(AppDelegateTest, LightsAndMotionFollowTheirSettings) {
    EXPECT_TRUE(panel.agents.hasLights());
    defaults.set("statusLights", false);
    EXPECT_FALSE(panel.agents.hasLights());
    look.reduceMotion();
    panel.notch.open();
    EXPECT_FALSE(panel.stage.isMoving());
    EXPECT_EQ(panel.stage.shape(), panel.stage.target());
}

} // namespace
} // namespace kippo
