#include "Mascot/MascotStage.h"

#include "Fakes/FakeScheduler.h"
#include "Support/LocalTime.h"

#include <gtest/gtest.h>

namespace kippo {
namespace {

using enum MascotState;
using namespace std::chrono_literals;

struct MascotStageTest : testing::Test {
    MascotStageTest() { stage.setFloorShown(true); }

    MascotState state() const { return stage.floor().state; }
    double position() const { return stage.floor().position(scheduler.now(), stage.floorLength()); }
    /// Runs until he is in `wanted`, for at most `limit`.
    testing::AssertionResult reaches(MascotState wanted, Seconds limit) {
        for (const Date end = scheduler.now() + limit; scheduler.now() < end; scheduler.advance(0.25s)) {
            if (state() == wanted) {
                return testing::AssertionSuccess();
            }
        }
        return testing::AssertionFailure() << "is in " << static_cast<int>(state());
    }

    FakeScheduler scheduler{atHour(dateFromUnix(1795226400), 14)};
    MascotStage stage{scheduler, std::mt19937{7}};
};

TEST_F(MascotStageTest, WalksTheFloorNowAndThenAndArrives) {
    for (int walks = 0; walks < 20; ++walks) {
        const Date before = scheduler.now();
        ASSERT_TRUE(reaches(walk, walks == 0 ? 46s : 361s));
        EXPECT_GT(scheduler.now() - before, walks < 3 ? 11s : 95s) << "more rarely, since nothing happens";
        const MascotStage::Floor setOut = stage.floor();
        EXPECT_GT(setOut.goal, 0.05);
        EXPECT_LT(setOut.goal, 0.95);
        EXPECT_GT(std::abs(setOut.goal - setOut.x), 0.1);
        EXPECT_EQ(setOut.facesLeft, setOut.goal < setOut.x);
        scheduler.advance(1s);
        EXPECT_GT(std::abs(position() - setOut.x), 0.01);
        ASSERT_TRUE(reaches(idle, 12s));
        EXPECT_DOUBLE_EQ(stage.floor().x, setOut.goal);
    }
}

TEST_F(MascotStageTest, ReactsByWhatHeIsDoing) {
    struct Case {
        MascotState before;
        MascotState afterClip, afterDone, afterNeedsYou, afterSale;
    };
    for (const Case& row : {Case{idle, catching, cheer, panic, cheer}, Case{walk, catching, cheer, panic, cheer},
                            Case{cheer, cheer, cheer, panic, cheer}, Case{panic, panic, cheer, panic, cheer},
                            Case{sleep, sleep, sleep, panic, cheer}}) {
        const auto after = [&](void (MascotStage::*event)()) {
            stage.setState(row.before);
            scheduler.advance(0.2s);
            (stage.*event)();
            return state();
        };
        SCOPED_TRACE(static_cast<int>(row.before));
        EXPECT_EQ(after(&MascotStage::clip), row.afterClip);
        EXPECT_EQ(after(&MascotStage::agentDone), row.afterDone);
        EXPECT_EQ(after(&MascotStage::agentNeedsYou), row.afterNeedsYou);
        EXPECT_EQ(after(&MascotStage::sale), row.afterSale);
    }
}

TEST_F(MascotStageTest, APerformanceStartsAnewAndThenHeStandsWhereItFoundHim) {
    ASSERT_TRUE(reaches(walk, 46s));
    scheduler.advance(1s);
    const double where = position();
    stage.agentDone();
    EXPECT_DOUBLE_EQ(position(), where) << "he stops for it";
    scheduler.advance(1.5s);
    int changes = 0;
    const Subscription watching = stage.observe([&] { ++changes; });
    stage.agentDone();
    EXPECT_EQ(stage.floor().since, scheduler.now());
    EXPECT_EQ(changes, 1) << "the same state again is news";
    scheduler.advance(1.5s);
    EXPECT_EQ(state(), cheer);
    scheduler.advance(0.5s);
    EXPECT_EQ(state(), idle);
    EXPECT_DOUBLE_EQ(position(), where);
}

TEST_F(MascotStageTest, NodsOffAtNightAndWakesInTheMorning) {
    scheduler.setClock(atHour(scheduler.now(), 23));
    ASSERT_TRUE(reaches(sleep, 70s));
    stage.agentNeedsYou();
    ASSERT_TRUE(reaches(sleep, 30s)) << "again";
    scheduler.setClock(scheduler.now() + 7h);
    ASSERT_TRUE(reaches(wake, 60s));
    ASSERT_TRUE(reaches(idle, 3s));
}

TEST_F(MascotStageTest, UnseenOrSwitchedOffHeCostsNothing) {
    ASSERT_TRUE(reaches(walk, 46s));
    stage.setFloorShown(false);
    EXPECT_EQ(state(), idle);
    EXPECT_EQ(scheduler.pendingCount(), 0U);
    stage.agentDone();
    scheduler.advance(10s);
    EXPECT_EQ(state(), idle) << "also what nobody saw ends";
    EXPECT_EQ(scheduler.pendingCount(), 0U);

    stage.setFloorShown(true);
    stage.agentDone();
    stage.setRoaming(false);
    EXPECT_EQ(scheduler.pendingCount(), 0U);
    stage.agentNeedsYou();
    EXPECT_EQ(state(), idle);
    EXPECT_EQ(scheduler.pendingCount(), 0U);
    stage.setRoaming(true);
    EXPECT_TRUE(reaches(walk, 46s));
}

TEST_F(MascotStageTest, AFloorThatBecomesLongerDoesNotMoveHim) {
    ASSERT_TRUE(reaches(walk, 46s));
    scheduler.advance(1s);
    const double where = position();
    stage.setFloorLength(12);
    EXPECT_DOUBLE_EQ(position(), where);
    EXPECT_EQ(state(), idle);
}

TEST_F(MascotStageTest, TheOneInTheWingSleepsAndWakesToSpeak) {
    EXPECT_FALSE(stage.wing());
    stage.wakeUp();
    EXPECT_FALSE(stage.wing()) << "he is not there";
    stage.setWingShown(true);
    EXPECT_EQ(stage.wing()->state, sleep);
    stage.agentDone();
    EXPECT_EQ(stage.wing()->state, sleep);
    scheduler.advance(60s);
    stage.wakeUp();
    EXPECT_EQ(*stage.wing(), (MascotStage::Actor{wake, scheduler.now()}));
    stage.fellSilent();
    EXPECT_EQ(stage.wing()->state, sleep);
    stage.setWingShown(false);
    EXPECT_FALSE(stage.wing());
}

} // namespace
} // namespace kippo
