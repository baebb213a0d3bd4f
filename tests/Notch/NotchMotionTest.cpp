#include "Notch/NotchMotion.h"
#include "Notch/NotchMetrics.h"

#include <cmath>
#include <gtest/gtest.h>

namespace kippo {

namespace {

constexpr Seconds frame{1.0 / 60};
const NotchShapes shapes = NotchMetrics::shapes({176, 24}, true, 214);

/// Moves on by whole frames, telling `look` each shape.
template <typename Look> void run(NotchMotion& motion, int frames, Look look) {
    for (int i = 0; i < frames; ++i) {
        motion.advance(frame);
        look(motion.shape());
    }
}
void run(NotchMotion& motion, int frames) {
    run(motion, frames, [](const NotchShape&) {});
}

/// How far open the width is, from 0 to 1.
double way(const NotchShape& shape) { return (shape.width - 176) / (664 - 176); }

} // namespace

TEST(NotchMotionTest, OpeningIsLivelyWithinBounds) {
    NotchMotion motion{shapes.collapsed};
    motion.setTarget(shapes.expanded);
    double widest = 0, highest = 0;
    run(motion, 60, [&](const NotchShape& shape) {
        widest = std::max(widest, shape.width);
        highest = std::max(highest, shape.height);
        // One spring: width and height are equally far on their ways.
        EXPECT_NEAR(way(shape), (shape.height - 24) / 214, 1e-6);
    });
    EXPECT_GT(widest, 664 + 5);
    EXPECT_LT(widest, 664 * 1.03);
    EXPECT_LT(highest, (24 + 214) * 1.03);
    EXPECT_TRUE(motion.isSettled());
    EXPECT_EQ(motion.shape(), shapes.expanded);
    motion.setTarget(shapes.collapsed);
    run(motion, 47);
    EXPECT_TRUE(motion.isSettled()) << "closing takes less";
    EXPECT_EQ(motion.shape(), shapes.collapsed);
}

TEST(NotchMotionTest, ClosingNeverPassesItsTargetWhereverItIsInterrupted) {
    for (const NotchShape& goal : {shapes.collapsed, shapes.live, shapes.peek}) {
        for (int opening = 1; opening < 40; ++opening) {
            for (const int closing : {0, 3, 9}) {
                NotchMotion motion{shapes.collapsed};
                motion.setTarget(shapes.expanded);
                run(motion, opening);
                motion.setTarget(shapes.collapsed);
                run(motion, closing);
                if (motion.shape().width < goal.width || motion.shape().height < goal.height) {
                    continue; // that would be growing
                }
                motion.setTarget(goal);
                run(motion, 90, [&](const NotchShape& shape) {
                    ASSERT_GE(shape.width, goal.width - 1e-6) << opening << ' ' << closing;
                    ASSERT_GE(shape.height, goal.height - 1e-6) << opening << ' ' << closing;
                });
                EXPECT_EQ(motion.shape(), goal);
            }
        }
    }
}

TEST(NotchMotionTest, ANewTargetKeepsTheVelocity) {
    NotchMotion motion{shapes.collapsed};
    motion.setTarget(shapes.expanded);
    run(motion, 4);
    const double before = motion.shape().width;
    motion.setTarget(shapes.collapsed);
    motion.advance(Seconds{0.001});
    EXPECT_GT(motion.shape().width, before) << "it goes on growing for a moment before it turns";
    run(motion, 90);
    EXPECT_EQ(motion.shape(), shapes.collapsed);
}

TEST(NotchMotionTest, DoesNotDependOnTheFrameRate) {
    const auto after = [](double hertz) {
        NotchMotion motion{shapes.collapsed};
        motion.setTarget(shapes.expanded);
        for (int i = 0; i < static_cast<int>(hertz / 10); ++i) {
            motion.advance(Seconds{1 / hertz});
        }
        motion.setTarget(shapes.peek);
        for (int i = 0; i < static_cast<int>(hertz / 20); ++i) {
            motion.advance(Seconds{1 / hertz});
        }
        return motion.shape();
    };
    for (const double hertz : {20.0, 60.0, 240.0}) {
        EXPECT_NEAR(after(hertz).width, after(1000).width, 1e-6) << hertz;
        EXPECT_NEAR(after(hertz).bottomRadius, after(1000).bottomRadius, 1e-6) << hertz;
    }
    NotchMotion stalled{shapes.collapsed};
    stalled.setTarget(shapes.expanded);
    stalled.advance(Seconds{30}); // the machine was busy, or asleep
    EXPECT_EQ(stalled.shape(), shapes.expanded);
}

TEST(NotchMotionTest, ContentComesLastAndGoesFirst) {
    const auto opacity = [](const NotchShape& shape) {
        return contentOpacity(shape, shapes.expanded, shapes.collapsed);
    };
    EXPECT_EQ(opacity(shapes.expanded), 1);
    EXPECT_EQ(contentOpacity(shapes.expanded, shapes.live, shapes.collapsed), 0);
    EXPECT_EQ(contentOpacity(shapes.live, shapes.live, shapes.collapsed), 1);

    NotchMotion motion{shapes.collapsed};
    motion.setTarget(shapes.expanded);
    double last = 0;
    run(motion, 60, [&](const NotchShape& shape) {
        EXPECT_TRUE(way(shape) >= 0.5 || opacity(shape) == 0);
        EXPECT_GE(opacity(shape), last) << "the swing past the target does not make the content flicker";
        last = opacity(shape);
    });
    motion.setTarget(shapes.collapsed);
    run(motion, 60, [&](const NotchShape& shape) { EXPECT_TRUE(way(shape) >= 0.6 || opacity(shape) == 0); });
}

} // namespace kippo
