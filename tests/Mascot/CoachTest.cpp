#include "Mascot/Coach.h"
#include "Fakes/FakeIdleTime.h"
#include "Fakes/FakeScheduler.h"
#include "Fakes/UnchangedSettings.h"
#include "Focus/FocusStore.h"
#include "Mascot/MascotLines.h"

#include <gmock/gmock.h>
#include <optional>
#include <set>

namespace kippo {

using namespace std::chrono_literals;
using testing::StartsWith;
using testing::UnorderedElementsAre;

/// A working day that begins at 09:00 UTC, with a person at the keyboard.
struct CoachTest : testing::Test {
    CoachTest() { launch(); }
    void launch() {
        coach.emplace(focus, Coach::Ports{.scheduler = scheduler,
                                          .defaults = defaults,
                                          .idleTime = person,
                                          .workingCount = [this] { return working; },
                                          .isUnsuitable = [this] { return filmRuns; },
                                          .random = std::mt19937{7}});
        coach->show = [this](const MascotMessage& message) { said.push_back(message); };
        coach->start();
    }
    /// When the next message comes, within `limit`.
    std::optional<Seconds> untilNext(Seconds limit) {
        const auto before = said.size();
        const Date start = scheduler.now();
        while (said.size() == before && scheduler.now() - start < limit) {
            scheduler.advance(30s);
        }
        return said.size() > before ? std::optional{scheduler.now() - start} : std::nullopt;
    }

    FakeScheduler scheduler{dateFromUnix(1772442000)};
    FakeDefaults defaults = unchangedSettings();
    FakeIdleTime person;
    FocusStore focus{scheduler, defaults};
    int working = 0;
    bool filmRuns = false;
    std::vector<MascotMessage> said;
    std::optional<Coach> coach;
};

TEST_F(CoachTest, AsksOnceADayWhetherItIsADayOfWork) {
    scheduler.advance(5s);
    EXPECT_TRUE(said.empty()) << "not before the welcome is over";
    defaults.set("onboarded", true);
    launch();
    scheduler.advance(4s);
    ASSERT_EQ(said.size(), 1U);
    EXPECT_EQ(said[0].primary->action.minutes, 25);
    EXPECT_EQ(said[0].secondary->title, "Not today");
    EXPECT_GT(untilNext(2h), Seconds{59min}) << "the question counts as a nudge";
    launch();
    scheduler.advance(5s);
    EXPECT_EQ(said.size(), 2U);
    scheduler.advance(24h);
    said.clear();
    focus.toggle();
    launch();
    scheduler.advance(5s);
    EXPECT_TRUE(said.empty()) << "the timer answers it";
}

TEST_F(CoachTest, SuggestsAPomodoroAfterActivityAndSoonerWhileAgentsWork) {
    EXPECT_EQ(untilNext(1h), Seconds{21min});
    EXPECT_THAT(said[0].primary->title, "Start 25 min");
    EXPECT_EQ(untilNext(3h), Seconds{1h + 30s});
    person.idle = 6min;
    scheduler.advance(1h + 1min);
    person.idle = 10s;
    working = 1;
    EXPECT_EQ(untilNext(1h), Seconds{5min + 60s}) << "a pause of five minutes began a new spell";
    scheduler.advance(1h);
    focus.begin(FocusStore::Phase::focus, 600);
    EXPECT_FALSE(untilNext(3h)) << "not while the timer runs";
}

TEST_F(CoachTest, HoldsItsTongueWhenItWouldDisturb) {
    filmRuns = true;
    EXPECT_FALSE(untilNext(3h));
    filmRuns = false;
    EXPECT_TRUE(untilNext(1min));
    defaults.set("mascotEnabled", false);
    EXPECT_FALSE(untilNext(3h));
    defaults.set("mascotEnabled", true);
    Coach::muteForToday(scheduler, defaults);
    EXPECT_FALSE(untilNext(8h));
    person.idle = std::nullopt;
    scheduler.advance(20h);
    said.clear();
    EXPECT_FALSE(untilNext(2h)) << "nothing is known of the person";
}

TEST_F(CoachTest, ASleepOfTheMachineIsAPause) {
    scheduler.advance(15min);
    scheduler.sleepFor(1h);
    EXPECT_EQ(untilNext(1h), Seconds{20min + 30s});
    EXPECT_EQ(scheduler.now() - dateFromUnix(1772442000), Seconds{1h + 35min + 30s});
}

TEST_F(CoachTest, AClockSetBackSilencesNobody) {
    scheduler.advance(19min);
    scheduler.setClock(scheduler.now() - 48h);
    EXPECT_TRUE(untilNext(2h));
}

TEST_F(CoachTest, SendsToBedAtNight) {
    person.idle = 10min;
    scheduler.advance(14h); // 23:00
    said.clear();
    person.idle = 5s;
    ASSERT_EQ(untilNext(1h), Seconds{30s});
    EXPECT_TRUE(said[0].wakeUp);
    EXPECT_EQ(untilNext(1h), Seconds{25min + 30s});
    person.idle = 70s;
    EXPECT_FALSE(untilNext(2h)) << "nobody is typing";
    person.idle = 5s; // 01:26
    EXPECT_TRUE(untilNext(1min));
    Coach::goodNight(scheduler, defaults);
    said.clear();
    EXPECT_GE(*untilNext(24h), Seconds{3h + 30min}) << "silent until the night is over";
    EXPECT_FALSE(said[0].wakeUp);
    EXPECT_EQ(defaults.get<double>("mascotNightMutedUntil"), 1772517600) << "06:00 that morning";
    scheduler.advance(dateFromUnix(1772578800) - scheduler.now()); // 23:00
    Coach::goodNight(scheduler, defaults);
    EXPECT_EQ(defaults.get<double>("mascotNightMutedUntil"), 1772604000) << "06:00 the next morning";
}

TEST(MascotLinesTest, TellsTheTimeOnATwelveHourClock) {
    MascotLines::Random random{1};
    std::set<std::string> texts;
    for (int i = 0; i < 100; ++i) {
        texts.insert(MascotLines::lateNight(0, 5, random).text);
    }
    EXPECT_THAT(texts, UnorderedElementsAre("It's 12:05. I was asleep. You should be too 😴",
                                            "Still coding at 12:05? The agents can finish without you. 🌙",
                                            "Zzz— huh? You're still here? Bed. Now.",
                                            "I tried to sleep. You kept typing. It's 12:05. 😵💫"));
}

TEST(MascotLinesTest, AnswersFitWhatIsDue) {
    MascotLines::Random random{1};
    const auto begun = MascotLines::focusDone(true, true, random);
    EXPECT_EQ(begun.text, "Four rounds! Long break. Go touch grass 🌿");
    EXPECT_EQ(begun.secondary->title, "Just rest");
    EXPECT_EQ(begun.secondary->action.value, MascotMessage::Action::Case::dismiss);
    const auto due = MascotLines::focusDone(false, false, random);
    EXPECT_EQ(due.secondary->title, "Plain break");
    EXPECT_EQ(due.secondary->action.value, MascotMessage::Action::Case::startBreak);
    EXPECT_NE(begun.id, due.id);
    const auto over = MascotLines::breakOver(50, random);
    EXPECT_EQ(over.primary->action.minutes, 50);
    EXPECT_THAT(over.primary->title, StartsWith("Start 50"));
    std::set<std::string> texts;
    for (int i = 0; i < 100; ++i) {
        texts.insert(MascotLines::workingNudge(42, false, 25, random).text);
    }
    EXPECT_EQ(texts.size(), 4U);
    EXPECT_TRUE(texts.contains("42 minutes straight! Want me to time a pomodoro?"));
}

} // namespace kippo
