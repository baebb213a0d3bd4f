#include "Notch/NotchOutline.h"
#include "Notch/NotchMetrics.h"

#include <cmath>
#include <gtest/gtest.h>

namespace kippo {

namespace {

const NotchShape open{664, 238, 12, 24};

} // namespace

TEST(NotchOutlineTest, FlaresIntoTheEdgeAndRoundsOffBelow) {
    const NotchOutline outline{open};
    EXPECT_NEAR(outline.halfWidth(0), 332, 0.01) << "the shoulders meet the screen's edge at the full width";
    EXPECT_NEAR(outline.halfWidth(120), 332 - 12 * 1.6, 0.01);
    EXPECT_LT(outline.halfWidth(237.5), 332 - 12 * 1.6 - 24);
    EXPECT_EQ(outline.halfWidth(238), 0);
    EXPECT_EQ(outline.halfWidth(-0.1), 0);
    // Concave above, convex below: the width falls ever slower, then ever faster.
    for (double y = 1; y < 18; ++y) {
        const double fall = outline.halfWidth(y) - outline.halfWidth(y + 1);
        EXPECT_LE(fall, outline.halfWidth(y - 1) - outline.halfWidth(y) + 1e-6) << y;
    }
    for (double y = 238 - 36; y < 236; ++y) {
        const double fall = outline.halfWidth(y) - outline.halfWidth(y + 1);
        EXPECT_GE(fall, outline.halfWidth(y - 1) - outline.halfWidth(y) - 1e-6) << y;
    }
}

TEST(NotchOutlineTest, TheTopmostRowOfPixelsReacts) {
    const NotchOutline outline{{176, 24, 6, 10}};
    EXPECT_TRUE(outline.contains({0, 0}));
    EXPECT_TRUE(outline.contains({-87, 0}));
    EXPECT_TRUE(outline.contains({87, 0}));
    EXPECT_FALSE(outline.contains({89, 0}));
    EXPECT_FALSE(outline.contains({0, 24}));
    EXPECT_FALSE(outline.contains({86, 12})) << "beside the body, below the shoulder";
    EXPECT_GT(outline.pixels(376, 1.5).at(0).width, 160 * 1.5);
}

// That the path covers the same is seen under the X server.
TEST(NotchOutlineTest, PixelsAreWholeRowsOnTheAxisAndFewRectangles) {
    for (const NotchShape& shape : {open, NotchShape{176, 24, 6, 10}, NotchShape{436.4, 63.7, 7.3, 15.1}}) {
        const NotchOutline outline{shape};
        for (const double scale : {1.0, 1.5, 2.0}) {
            int row = 0;
            for (const PixelRect& rect : outline.pixels(376, scale)) {
                EXPECT_EQ(rect.y, row) << "every row once, none left out";
                EXPECT_NEAR(rect.x + rect.width / 2.0, 376 * scale, 0.51) << "on the axis";
                row = rect.y + rect.height;
            }
            EXPECT_EQ(row, static_cast<int>(std::ceil(shape.height * scale - 0.5))) << "down to the lower edge";
        }
    }
    EXPECT_LT(NotchOutline{open}.pixels(376, 2).size(), 120U);
    EXPECT_EQ((NotchOutline{{100, 50, 0, 0}}.pixels(376, 1)), (std::vector<PixelRect>{{326, 0, 100, 50}}));
}

TEST(NotchOutlineTest, ImpossibleRadiiAndSizesDoNoHarm) {
    const NotchOutline tight{{60, 10, 40, 90}};
    EXPECT_NEAR(tight.halfWidth(0), 30, 0.01);
    EXPECT_GE(tight.halfWidth(9.99), 0);
    for (const NotchShape& shape : {NotchShape{}, NotchShape{-5, -5, -1, -1}, NotchShape{0, 40, 6, 6}}) {
        const NotchOutline nothing{shape};
        EXPECT_TRUE(nothing.pixels(376, 2).empty());
        EXPECT_FALSE(nothing.contains({0, 0}));
    }
}

TEST(NotchOutlineTest, ABubblesPixelsAreItsRoundedRectangle) {
    const auto rows = roundedPixels({10, 32, 100, 60}, 20, 2);
    ASSERT_FALSE(rows.empty());
    EXPECT_EQ(rows.front().y, 64);
    EXPECT_EQ(rows.back().y + rows.back().height, 184);
    int widest = 0;
    for (const PixelRect& row : rows) {
        EXPECT_EQ(2 * row.x + row.width, 2 * 120) << "on its middle";
        widest = std::max(widest, row.width);
    }
    EXPECT_EQ(widest, 200);
    EXPECT_LT(rows.front().width, 150);
    EXPECT_TRUE(roundedPixels({}, 20, 1).empty());
}

} // namespace kippo
