#include "Notch/Views/NotchStage.h"

#include <QSignalSpy>
#include <gtest/gtest.h>

namespace kippo {
namespace {

using Mode = NotchModel::Mode;

struct NotchStageTest : testing::Test {
    const NotchShapes shapes = NotchMetrics::shapes({176, 32}, false, 214);
    NotchStage stage;

    /// Frames at 60 a second until nothing moves; how many there were.
    int play(const std::function<void()>& eachFrame = [] {}) {
        int frames = 0;
        for (; stage.isMoving() && frames < 1000; ++frames) {
            stage.advance(1.0 / 60);
            eachFrame();
        }
        return frames;
    }
};

TEST_F(NotchStageTest, MovesWhileThereIsAWayToGoAndNoLonger) {
    stage.show(shapes, Mode::live);
    EXPECT_FALSE(stage.isMoving()) << "there at once the first time";
    EXPECT_EQ(stage.shape(), shapes.live);
    EXPECT_EQ(stage.liveOpacity(), 1);
    const QSignalSpy moving{&stage, &NotchStage::movingChanged};
    stage.show(shapes, Mode::expanded);
    EXPECT_TRUE(stage.isMoving());
    EXPECT_LT(play(), 90);
    EXPECT_EQ(stage.shape(), shapes.expanded);
    EXPECT_EQ(stage.expandedOpacity(), 1);
    EXPECT_EQ(moving.count(), 2);
    stage.show(shapes, Mode::expanded);
    EXPECT_FALSE(stage.isMoving());
}

TEST_F(NotchStageTest, WhatLiesOnTheWayDoesNotFlashUpAndContentWaitsForTheShape) {
    stage.show(shapes, Mode::collapsed);
    for (const Mode mode : {Mode::expanded, Mode::collapsed}) {
        stage.show(shapes, mode);
        play([&] {
            EXPECT_EQ(stage.liveOpacity(), 0);
            EXPECT_EQ(stage.peekOpacity(), 0);
            EXPECT_TRUE(stage.shapeHeight() >= 140 || stage.expandedOpacity() == 0) << stage.shapeHeight();
        });
    }
}

TEST_F(NotchStageTest, ALateFrameIsNoLeap) {
    stage.show(shapes, Mode::collapsed);
    stage.show(shapes, Mode::expanded);
    stage.advance(3600);
    EXPECT_TRUE(stage.isMoving());
    EXPECT_LT(stage.shapeHeight(), shapes.expanded.height / 2);
}

} // namespace
} // namespace kippo
