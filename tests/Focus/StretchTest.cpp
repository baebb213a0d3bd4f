#include "Focus/Stretch.h"
#include "Fakes/FakeScheduler.h"
#include "Fakes/FakeSounds.h"

#include <cmath>
#include <gmock/gmock.h>

namespace kippo {

using testing::ElementsAre;

struct StretchTest : testing::Test {
    FakeScheduler scheduler;
    FakeSounds sounds;
    StretchStore store{scheduler, sounds};
    int closed = 0;
    StretchTest() {
        store.onEnd = [this] { ++closed; };
    }
};

TEST_F(StretchTest, LeadsThroughAllFiveAndCloses) {
    store.next();
    EXPECT_FALSE(store.index()) << "nothing runs yet";
    store.start();
    scheduler.advance(Seconds{29.5});
    EXPECT_EQ(store.pose()->name, "Neck tilts");
    scheduler.advance(Seconds{0.5});
    EXPECT_EQ(store.pose()->name, "Shoulder rolls");
    scheduler.advance(Seconds{120});
    EXPECT_TRUE(store.isFinished());
    EXPECT_THAT(sounds.played, ElementsAre(Sound::tink, Sound::tink, Sound::tink, Sound::tink, Sound::glass));
    EXPECT_EQ(scheduler.pendingCount(), 0U);
    store.end();
    store.end();
    EXPECT_FALSE(store.index());
    EXPECT_EQ(closed, 1);
}

TEST_F(StretchTest, GoesBackAndStartsAgain) {
    store.start();
    scheduler.advance(Seconds{10});
    store.previous();
    EXPECT_EQ(store.index(), 0);
    scheduler.advance(Seconds{29.5});
    EXPECT_EQ(store.index(), 0) << "from its beginning";
    for (int i = 0; i < 5; ++i) {
        store.next();
    }
    store.previous();
    EXPECT_EQ(store.index(), 4);
    scheduler.advance(Seconds{30});
    EXPECT_TRUE(store.isFinished());
    store.start();
    store.start();
    EXPECT_EQ(store.index(), 0);
    EXPECT_EQ(scheduler.pendingCount(), 1U);
}

using Joint = double FigurePose::*;
constexpr Joint joints[] = {&FigurePose::headTilt,  &FigurePose::shoulderLift, &FigurePose::shoulderWidth,
                            &FigurePose::torsoLean, &FigurePose::leftArm,      &FigurePose::leftForearm,
                            &FigurePose::leftWrist, &FigurePose::rightArm,     &FigurePose::rightForearm,
                            &FigurePose::rightWrist};

TEST(StretchRoutineTest, EveryMotionBeginsAndEndsAtRestWithoutAJerk) {
    constexpr double step = 1.0 / 60;
    for (const auto& pose : StretchRoutine::poses) {
        EXPECT_EQ(pose.motion(Seconds{0}), FigurePose{}) << pose.name;
        for (const auto joint : joints) {
            EXPECT_NEAR(pose.motion(pose.duration).*joint, 0, 1e-9) << pose.name;
            for (double t = step; t < 30 - step; t += step) {
                const auto at = [&](double time) { return pose.motion(Seconds{time}).*joint; };
                // Angles stay below 240 degrees a second, and below a jump of speed.
                ASSERT_LT(std::abs(at(t + step) - at(t)), 4) << pose.name << " at " << t;
                ASSERT_LT(std::abs(at(t + step) - 2 * at(t) + at(t - step)), 0.3) << pose.name << " at " << t;
            }
        }
    }
}

TEST(StretchRoutineTest, SidesSwitchAtHalf) {
    const auto early = Seconds{9};
    const auto late = Seconds{24};
    const auto& poses = StretchRoutine::poses;
    EXPECT_LT(poses[0].motion(early).headTilt, -20);
    EXPECT_GT(poses[0].motion(late).headTilt, 20);
    EXPECT_LT(poses[2].motion(early).torsoLean, -12);
    EXPECT_GT(poses[2].motion(late).torsoLean, 12);
    EXPECT_LT(poses[3].motion(Seconds{5}).leftWrist, -40) << "palm forward";
    EXPECT_GT(poses[3].motion(Seconds{12}).leftWrist, 40) << "palm down";
    EXPECT_LT(poses[3].motion(Seconds{20}).rightWrist, -40);
    for (const auto& pose : poses) {
        EXPECT_EQ(pose.isOnSecondSide(late), pose.hasSides) << pose.name;
        EXPECT_FALSE(pose.isOnSecondSide(early)) << pose.name;
    }
}

} // namespace kippo
