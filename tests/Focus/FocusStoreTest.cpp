#include "Focus/FocusStore.h"
#include "Fakes/FakeScheduler.h"
#include "Fakes/UnchangedSettings.h"
#include "Focus/FocusCountdown.h"

#include <gmock/gmock.h>
#include <optional>
#include <string>
#include <utility>
#include <vector>

namespace kippo {

using namespace std::chrono_literals;
using testing::ElementsAre;
using testing::Pair;
using Phase = FocusStore::Phase;

struct FocusStoreTest : testing::Test {
    FocusStoreTest() { launch(); }
    /// The application starts anew on what it saved.
    void launch() {
        store.emplace(scheduler, defaults);
        store->onPhaseEnd = [this](Phase ended, Phase next) { ends.emplace_back(ended, next); };
        store->start();
    }
    void closeFor(Seconds span) {
        store.reset();
        scheduler.advance(span);
        launch();
    }
    double left() const { return store->remaining(scheduler.now()).count(); }

    FakeScheduler scheduler{dateFromUnix(1772442000)}; // 2026-03-02 09:00:00 UTC; the tests run in UTC
    FakeDefaults defaults = unchangedSettings();
    std::vector<std::pair<Phase, Phase>> ends;
    std::optional<FocusStore> store;
};

TEST_F(FocusStoreTest, FourRoundsOfFocusEarnALongBreak) {
    store->toggle();
    EXPECT_EQ(store->subline(), "Round 1 of 4 · 0 focus sessions today");
    scheduler.advance(25min);
    EXPECT_EQ(store->phase(), Phase::shortBreak) << "breaks begin by themselves";
    EXPECT_EQ(store->headline(), "Stretch, sip, look away");
    scheduler.advance(5min);
    EXPECT_EQ(store->phase(), Phase::idle) << "focus does not";
    EXPECT_EQ(store->headline(), "Nice. Another round?");
    EXPECT_EQ(store->subline(), "1 focus session today");
    for (int i = 0; i < 2; ++i) {
        store->toggle();
        store->skip();
        store->skip();
    }
    store->toggle();
    EXPECT_EQ(store->subline(), "Round 4 of 4 · 3 focus sessions today");
    scheduler.advance(25min);
    EXPECT_EQ(store->headline(), "Long break. You earned it");
    EXPECT_EQ(left(), 15 * 60);
    store->skip();
    EXPECT_EQ(store->round(), 0);
    EXPECT_EQ(store->completedToday(), 4);
    ASSERT_EQ(ends.size(), 8U);
    EXPECT_THAT(ends[0], Pair(Phase::focus, Phase::shortBreak));
    EXPECT_THAT(ends[1], Pair(Phase::shortBreak, Phase::idle));
    EXPECT_THAT(ends[6], Pair(Phase::focus, Phase::longBreak));
    EXPECT_THAT(ends[7], Pair(Phase::longBreak, Phase::idle));
}

TEST_F(FocusStoreTest, PausesResumesAndResets) {
    store->toggle();
    scheduler.advance(10min);
    EXPECT_DOUBLE_EQ(store->progress(scheduler.now()), 0.4);
    store->toggle();
    scheduler.advance(2h);
    EXPECT_EQ(left(), 15 * 60);
    store->resume();
    scheduler.advance(15min - 1s);
    EXPECT_EQ(store->phase(), Phase::focus);
    scheduler.advance(1s);
    EXPECT_EQ(store->phase(), Phase::shortBreak);
    store->pause();
    store->reset();
    EXPECT_EQ(store->phase(), Phase::idle);
    EXPECT_EQ(left(), 25 * 60);
    store->pause();
    store->resume();
    store->skip();
    EXPECT_EQ(store->phase(), Phase::idle) << "nothing of this means anything while idle";
    EXPECT_EQ(ends.size(), 1U);
}

TEST_F(FocusStoreTest, BreaksAreDueByTheRound) {
    store->startBreak();
    EXPECT_EQ(store->phase(), Phase::shortBreak) << "before any focus";
    defaults.set("autoStartBreaks", false);
    for (int i = 0; i < 4; ++i) {
        store->begin(Phase::focus, 25);
        store->skip();
        EXPECT_EQ(store->phase(), Phase::idle);
    }
    EXPECT_THAT(ends.back(), Pair(Phase::focus, Phase::longBreak)) << "due, though it did not begin";
    store->startBreak();
    EXPECT_EQ(store->phase(), Phase::longBreak);
}

TEST_F(FocusStoreTest, MinutesAreAtLeastOne) {
    for (const std::int64_t minutes : {0, -5}) {
        defaults.set("focusMinutes", minutes);
        EXPECT_EQ(left(), 60);
    }
    store->toggle();
    scheduler.advance(1min);
    EXPECT_EQ(store->completedToday(), 1);
}

TEST_F(FocusStoreTest, OutlivesTheApplication) {
    store->toggle();
    closeFor(10min);
    EXPECT_EQ(left(), 15 * 60);
    store->pause();
    closeFor(72h);
    EXPECT_EQ(left(), 15 * 60);
    EXPECT_EQ(store->phase(), Phase::focus);
    store->resume();
    closeFor(1h);
    EXPECT_EQ(store->phase(), Phase::idle) << "it ran out, and no break began unseen";
    EXPECT_EQ(store->round(), 1);
    EXPECT_EQ(store->completedToday(), 1);
    EXPECT_TRUE(ends.empty());
    closeFor(24h);
    EXPECT_EQ(store->completedToday(), 0);
    EXPECT_EQ(store->round(), 1);
    store->toggle();
    closeFor(24h);
    EXPECT_EQ(store->completedToday(), 0) << "it ended yesterday";
    EXPECT_EQ(store->round(), 2);
}

TEST_F(FocusStoreTest, DamagedStateIsIgnored) {
    for (const std::string damaged :
         {"", "{", "[]", R"({"phase":"nap","total":1,"round":0,"completedToday":0,"day":0})",
          R"({"phase":"focus","total":1500,"round":0,"completedToday":0,"day":0})",
          R"({"phase":"focus","endsAt":1,"pausedRemaining":1,"total":1500,"round":0,"completedToday":0,"day":0})",
          R"({"phase":"focus","pausedRemaining":-1,"total":1500,"round":0,"completedToday":0,"day":0})",
          R"({"phase":"idle","total":1500,"round":1e300,"completedToday":0,"day":0})"}) {
        defaults.set("focusState", damaged);
        launch();
        EXPECT_EQ(store->phase(), Phase::idle) << damaged;
        EXPECT_EQ(left(), 25 * 60) << damaged;
    }
}

TEST_F(FocusStoreTest, TheDayRollsAtMidnightWhateverRuns) {
    store->begin(Phase::focus, 10);
    store->skip();
    EXPECT_EQ(store->completedToday(), 1);
    store->reset();
    scheduler.advance(14h + 55min); // 23:55
    store->begin(Phase::focus, 10);
    scheduler.advance(5min + 1s);
    EXPECT_EQ(store->completedToday(), 0);
    EXPECT_EQ(store->phase(), Phase::focus);
    scheduler.advance(5min);
    EXPECT_EQ(store->completedToday(), 1);
    scheduler.advance(24h + 1min);
    EXPECT_EQ(store->completedToday(), 0) << "also while nothing runs";
    store->begin(Phase::focus, 1);
    store->skip();
    scheduler.sleepFor(24h);
    EXPECT_EQ(store->completedToday(), 0) << "or while the machine sleeps";
}

TEST_F(FocusStoreTest, WorkStandsStillWhileTheMachineSleepsAndBreaksPass) {
    store->toggle();
    scheduler.advance(10min);
    scheduler.sleepFor(20min);
    EXPECT_EQ(left(), 15 * 60);
    EXPECT_TRUE(store->isRunning());
    scheduler.sleepFor(9h);
    EXPECT_TRUE(store->isPaused()) << "nobody says that the person is back at it";
    EXPECT_EQ(left(), 15 * 60);
    store->startBreak();
    scheduler.sleepFor(3min);
    EXPECT_EQ(left(), 2 * 60);
    scheduler.sleepFor(10min);
    EXPECT_THAT(ends, ElementsAre(Pair(Phase::shortBreak, Phase::idle))) << "said on waking";
    store->startBreak();
    scheduler.sleepFor(9h);
    EXPECT_EQ(store->phase(), Phase::idle);
    EXPECT_EQ(ends.size(), 1U) << "too long ago to speak of";
}

TEST_F(FocusStoreTest, ASetClockChangesNothingOfWhatIsLeft) {
    store->toggle();
    scheduler.advance(5min);
    for (const Seconds step : {Seconds{3h}, Seconds{-30h}}) {
        scheduler.setClock(scheduler.now() + step);
        scheduler.advance(1s);
        EXPECT_TRUE(store->isRunning());
        EXPECT_NEAR(left(), 20 * 60 - 1, 1.01);
    }
}

TEST_F(FocusStoreTest, TheTourLeavesNoTrace) {
    store->toggle();
    scheduler.advance(5min);
    const auto saved = defaults.get<std::string>("focusState");
    store->startDemo(1);
    EXPECT_EQ(left(), 60);
    scheduler.advance(2min);
    store->skip();
    EXPECT_EQ(defaults.get<std::string>("focusState"), saved);
    store->endDemo();
    EXPECT_EQ(left(), 18 * 60);
    EXPECT_EQ(store->completedToday(), 0);
}

TEST_F(FocusStoreTest, TwoYearsOfUseAddUp) {
    int phases = 0;
    store->onPhaseEnd = [&phases](Phase ended, Phase) { phases += ended == Phase::focus ? 1 : 0; };
    for (int day = 0; day < 730; ++day) {
        for (int i = 0; i < 3; ++i) {
            store->begin(Phase::focus, 1);
            scheduler.advance(1min);
            store->reset();
        }
        EXPECT_EQ(store->completedToday(), 3);
        scheduler.sleepFor(24h - 3min);
    }
    EXPECT_EQ(phases, 2190);
}

TEST_F(FocusStoreTest, TellsTheRoundsAndWhatComesNext) {
    EXPECT_EQ(store->upNext(), "");
    for (int round = 0; round < 4; ++round) {
        EXPECT_EQ(store->roundsDone(), round);
        store->begin(Phase::focus, 25);
        EXPECT_EQ(store->upNext(), round == 3 ? "Next: 15 min long break" : "Next: 5 min break");
        store->skip();
        EXPECT_EQ(store->upNext(), "Next: 25 min of focus, when you start it");
        EXPECT_EQ(store->roundsDone(), round + 1);
    }
    store->skip();
    EXPECT_EQ(store->roundsDone(), 0) << "after the long break";
    defaults.set("autoStartBreaks", false);
    store->toggle();
    EXPECT_EQ(store->upNext(), "Next: 5 min break, when you start it");
}

TEST(FocusMinutesTest, StepToMultiplesOfFive) {
    EXPECT_EQ(FocusStore::steppedMinutes(25, 1), 30);
    EXPECT_EQ(FocusStore::steppedMinutes(52, -1), 50);
    EXPECT_EQ(FocusStore::steppedMinutes(52, 1), 55);
    EXPECT_EQ(FocusStore::steppedMinutes(5, -1), 4);
    EXPECT_EQ(FocusStore::steppedMinutes(3, 2), 5);
    EXPECT_EQ(FocusStore::steppedMinutes(1, -1), 1);
    EXPECT_EQ(FocusStore::steppedMinutes(180, 1), 180);
    EXPECT_EQ(FocusStore::steppedMinutes(1440, -1), 180);
}

TEST_F(FocusStoreTest, RestingItHardlyWakes) {
    scheduler.advance(1s);
    const auto waiting = scheduler.pendingCount();
    store->toggle();
    store->pause();
    store->resume();
    store->reset();
    EXPECT_EQ(scheduler.pendingCount(), waiting) << "one timer, whatever happens";
}

TEST(FocusCountdownTest, RoundsUpToAWholeSecond) {
    const std::vector<std::pair<double, const char*>> texts{
        {61.2, "1:02"}, {59.01, "1:00"}, {60, "1:00"}, {0.4, "0:01"}, {0, "0:00"}, {-3, "0:00"}, {5400, "90:00"}};
    for (const auto& [left, text] : texts) {
        EXPECT_EQ(FocusCountdown::clockText(Seconds{left}), text) << left;
    }
    EXPECT_NEAR(FocusCountdown::untilNextSecond(Seconds{61.2}).count(), 0.2, 1e-6);
    EXPECT_NEAR(FocusCountdown::untilNextSecond(Seconds{61}).count(), 1, 1e-6);
}

} // namespace kippo
