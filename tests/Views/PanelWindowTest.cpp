#include "XDesktop.h"

#include <algorithm>
#include <cmath>
#include <gtest/gtest.h>

namespace kippo {

namespace {

using namespace std::chrono_literals;
using Region = XDesktop::Region;

constexpr int screenWidth = 1920;
constexpr int screenHeight = 1080;
constexpr int center = screenWidth / 2;

bool isDark(std::uint32_t pixel) {
    return (pixel >> 16 & 0xFF) < 128 && (pixel >> 8 & 0xFF) < 128 && (pixel & 0xFF) < 128;
}

/// The panel on a desktop with a white window over the whole screen, which counts the clicks that it gets.
class PanelWindowTest : public testing::Test {
protected:
    void SetUp() override {
        desktop_ = XDesktop::start(screenWidth, screenHeight);
        if (!desktop_) {
            GTEST_SKIP() << "Xvfb is not installed; the panel's window is not tested";
        }
    }

    void startPanel(double scale = 1) {
        scale_ = scale;
        panel_ = desktop_->run({KIPPO_PANEL_PROBE}, {"QT_QPA_PLATFORM=xcb", "XDG_RUNTIME_DIR=/tmp",
                                                     "QT_SCALE_FACTOR=" + std::to_string(scale)});
        ASSERT_TRUE(eventually([this] { return findPanel() && isClosed(); })) << "no panel appeared";
    }
    bool findPanel() {
        const auto found = desktop_->windowAtTop(pixels(752));
        window_ = found ? found->id : XCB_NONE;
        left_ = found ? found->x : 0;
        return found.has_value();
    }
    int pixels(double length) const { return static_cast<int>(std::lround(length * scale_)); }

    /// The shape's width in its topmost row of pixels, where the shoulders have come in a little, and its height.
    std::pair<int, int> extent(Region region = Region::input) const { return desktop_->extent(window_, region); }
    bool isClosedShape(std::pair<int, int> size) const {
        return size.second == pixels(24) && size.first > pixels(150) && size.first <= pixels(176);
    }
    bool isClosed() const { return isClosedShape(extent()); }
    bool isOpen() const { return extent().second >= pixels(24 + 184) && extent().first > pixels(630); }
    bool isOnTopOf(xcb_window_t client) const {
        const auto windows = desktop_->windows();
        const auto place = [&](xcb_window_t id) { return std::ranges::find(windows, id, &XDesktop::Window::id); };
        return place(window_) > place(desktop_->topLevelOf(client));
    }
    void open() {
        desktop_->movePointer(center, 3);
        ASSERT_TRUE(eventually([this] { return isOpen(); }));
    }
    void close() {
        desktop_->movePointer(10, screenHeight - 10);
        ASSERT_TRUE(eventually([this] { return isClosed(); }));
    }

    std::unique_ptr<XDesktop> desktop_;
    Child panel_;
    xcb_window_t window_ = XCB_NONE;
    int left_ = 0; ///< of the window
    double scale_ = 1;
};

} // namespace

TEST_F(PanelWindowTest, OpensFromTheTopmostRowAndClosesWhenThePointerHasLeft) {
    startPanel();
    desktop_->movePointer(center, 0);
    EXPECT_TRUE(eventually([this] { return isOpen(); }));
    desktop_->movePointer(center, 150);
    EXPECT_TRUE(throughout(400ms, [this] { return isOpen(); })) << "the pointer rests in the open page";
    desktop_->movePointer(center, 400);
    EXPECT_TRUE(eventually([this] { return isClosed(); }));
    desktop_->movePointer(center + 120, 3); // inside of the window, beside the shape
    EXPECT_TRUE(throughout(300ms, [this] { return isClosed(); }));
}

TEST_F(PanelWindowTest, ClosesWhenThePointerLeavesBeforeTheShapeHasGrownUnderIt) {
    startPanel();
    desktop_->movePointer(center, 3);
    ASSERT_TRUE(eventually([this] { return extent().first > 200; }));
    desktop_->movePointer(center - 300, 190); // the page will be here, and is not yet
    ASSERT_TRUE(eventually([this] { return isOpen(); }));
    desktop_->movePointer(10, screenHeight - 10);
    EXPECT_TRUE(eventually([this] { return isClosed(); }));
}

TEST_F(PanelWindowTest, StaysAboveAFullScreenWindow) {
    startPanel();
    const xcb_window_t client = desktop_->openFullScreen();
    EXPECT_TRUE(eventually([&] { return isOnTopOf(client) && desktop_->picture().at(center, 12) == 0x000000; }));
    EXPECT_EQ(desktop_->picture().at(center, 40), 0xFFFFFFU);

    desktop_->raise(desktop_->topLevelOf(client));
    EXPECT_TRUE(eventually([&] { return isOnTopOf(client); })) << "raised over it, behind the window manager's back";
    open();
    EXPECT_TRUE(isOnTopOf(client));
}

TEST_F(PanelWindowTest, TakesClicksOnItsShapeAlone) {
    startPanel();
    desktop_->openFullScreen();
    int expected = 0;
    for (const auto& [x, y] : {std::pair{center, 40}, {center + 95, 2}, {center - 85, 20}}) {
        desktop_->movePointer(x, y);
        desktop_->click();
        ++expected;
        EXPECT_TRUE(eventually([&] { return desktop_->presses() == expected; })) << x << ' ' << y;
    }
    EXPECT_TRUE(isClosed());
    open();
    desktop_->click();
    desktop_->movePointer(center + 200, 150);
    desktop_->click();
    EXPECT_TRUE(throughout(100ms, [&] { return desktop_->presses() == 3; }));
    EXPECT_TRUE(isOpen());
    desktop_->movePointer(center, 500);
    desktop_->click();
    EXPECT_TRUE(eventually([&] { return desktop_->presses() == 4; }));
    EXPECT_TRUE(eventually([this] { return isClosed(); })) << "a click elsewhere closes, and reaches its window";
}

TEST_F(PanelWindowTest, LeavesTheFocusAlone) {
    const xcb_window_t client = desktop_->openFullScreen();
    startPanel();
    EXPECT_EQ(desktop_->focus(), client);
    open();
    desktop_->click();
    EXPECT_TRUE(throughout(200ms, [&] { return desktop_->focus() == client; }));
    close();
    EXPECT_EQ(desktop_->focus(), client);
}

TEST_F(PanelWindowTest, FollowsTheCompositorAsItComesAndGoes) {
    startPanel();
    EXPECT_TRUE(isClosedShape(extent(Region::bounding))) << "nothing that would be black";
    Child compositor = desktop_->run({"picom", "--backend", "xrender", "--config", "/dev/null"});
    if (!eventually([this] { return desktop_->isComposited(); })) {
        GTEST_SKIP() << "picom is not installed; the panel is not tested with a compositor";
    }
    EXPECT_TRUE(eventually([this] { return extent(Region::bounding) == std::pair{752, 252}; }));
    EXPECT_TRUE(isClosed());
    const xcb_window_t client = desktop_->openFullScreen();
    EXPECT_TRUE(eventually([&] { return isOnTopOf(client); }));
    open();
    close();
    compositor.end();
    EXPECT_TRUE(eventually([this] { return isClosedShape(extent(Region::bounding)); }));
}

TEST_F(PanelWindowTest, WhatIsDrawnIsWhatTakesThePointerAtEveryScale) {
    desktop_->openFullScreen();
    const Child compositor = desktop_->run({"picom", "--backend", "xrender", "--config", "/dev/null"});
    const bool isComposited = eventually([this] { return desktop_->isComposited(); });
    for (const double scale : {1.0, 1.5, 2.0}) {
        SCOPED_TRACE(scale);
        startPanel(scale);
        const auto differing = [&] {
            const XDesktop::Picture picture = desktop_->picture();
            std::vector<bool> expected(picture.pixels.size());
            for (const xcb_rectangle_t& rect : desktop_->region(window_, Region::input)) {
                for (int y = rect.y; y < rect.y + rect.height; ++y) {
                    std::fill_n(expected.begin() + y * picture.width + left_ + rect.x, rect.width, true);
                }
            }
            int count = 0;
            for (std::size_t i = 0; i < expected.size(); ++i) {
                count += isDark(picture.pixels[i]) == expected[i] ? 0 : 1;
            }
            return count;
        };
        // Pixels on the rim that are half covered may fall to either side.
        EXPECT_TRUE(eventually([&] { return differing() <= pixels(8); })) << differing();
        desktop_->movePointer(center, 0);
        ASSERT_TRUE(eventually([this] { return isOpen(); }));
        EXPECT_TRUE(eventually([&] { return differing() <= pixels(20); })) << differing();
        close();
        panel_.end();
    }
    if (!isComposited) {
        GTEST_SKIP() << "picom is not installed; looked at without a compositor only";
    }
}

} // namespace kippo
