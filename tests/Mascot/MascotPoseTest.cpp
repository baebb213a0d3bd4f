#include "Mascot/MascotPose.h"

#include <cmath>
#include <gtest/gtest.h>

namespace kippo {
namespace {

using enum MascotState;

constexpr std::initializer_list<MascotState> everyState{idle, walk, catching, cheer, panic, sleep, wake, talk};

TEST(MascotPoseTest, NothingLeapsFromOneFrameToTheNext) {
    constexpr double frame = 1.0 / 60;
    for (const MascotState state : everyState) {
        for (double time = 0; time < 60; time += frame) {
            const MascotPose before = MascotPose::at(state, Seconds{time});
            const MascotPose after = MascotPose::at(state, Seconds{time + frame});
            SCOPED_TRACE(testing::Message() << "state " << static_cast<int>(state) << " at " << time << " s");
            ASSERT_LT(std::abs(after.y - before.y), 9);
            ASSERT_LT(std::abs(after.angle - before.angle), 6);
            ASSERT_LT(std::abs(after.stretch - before.stretch), 0.12);
            ASSERT_LT(std::abs(after.ears.left - before.ears.left), 12);
            ASSERT_LT(std::abs(after.wings.right - before.wings.right), 0.3);
            ASSERT_LT(std::abs(after.eyes.left - before.eyes.left), 0.6);
            if (before.sheet.size > 0 && after.sheet.size > 0) {
                ASSERT_LT(std::hypot(after.sheet.x - before.sheet.x, after.sheet.y - before.sheet.y), 12);
            }
        }
    }
}

TEST(MascotPoseTest, WhileHeSaysThatHeStandsStillHeDoes) {
    for (const MascotState state : everyState) {
        double stillTime = 0;
        for (double time = 0; time < 100;) {
            const auto still = MascotMotion::stillFor(state, Seconds{time});
            if (still == Seconds{0}) {
                time += 0.01;
                continue;
            }
            const double rest = still ? still->count() : 100;
            const MascotPose pose = MascotPose::at(state, Seconds{time});
            for (const double part : {0.01, 0.3, 0.7, 0.99}) {
                ASSERT_EQ(MascotPose::at(state, Seconds{time + rest * part}), pose)
                    << "state " << static_cast<int>(state) << " at " << time << " s";
            }
            stillTime += rest;
            time += rest + 0.005;
        }
        EXPECT_TRUE(state == walk || stillTime > 80)
            << "state " << static_cast<int>(state) << ": " << stillTime << " s";
    }
}

TEST(MascotPoseTest, APerformanceEndsOnTheFloorWithItsThingsPutAway) {
    for (const MascotState state : {catching, cheer, panic, wake}) {
        const MascotPose end = MascotPose::at(state, *MascotMotion::duration(state));
        const MascotPose standing = MascotPose::atRest(idle);
        SCOPED_TRACE(static_cast<int>(state));
        EXPECT_NEAR(end.y, 0, 0.01);
        EXPECT_NEAR(end.stretch, standing.stretch, 0.01);
        EXPECT_NEAR(end.wrap + end.wings.left + end.sheet.size + end.alarm.size + end.sweat.size, 0, 0.01);
        EXPECT_TRUE(end.burst == 0 || end.burst == 1);
    }
}

TEST(MascotPoseTest, MixesAndMirrors) {
    const MascotPose from = MascotPose::at(panic, Seconds{0.8});
    const MascotPose to = MascotPose::at(sleep, Seconds{5});
    EXPECT_EQ(MascotPose::mix(from, to, 0), from);
    EXPECT_EQ(MascotPose::mix(from, to, 1), to);
    EXPECT_DOUBLE_EQ(MascotPose::mix(from, to, 0.5).snore, (from.snore + to.snore) / 2);
    EXPECT_EQ(from.mirrored().mirrored(), from);
    EXPECT_NE(from.mirrored(), from);
}

} // namespace
} // namespace kippo
