#include "NotchFixture.h"

namespace kippo {

using NotchLayoutTest = NotchFixture;

namespace {

const Screen laptop{.name = "eDP-1", .frame = {0, 0, 1512, 982}, .scale = 2, .isBuiltIn = true};
const Screen external{.name = "HDMI-1", .frame = {1512, -200, 2560, 1440}, .isPrimary = true};

} // namespace

TEST_F(NotchLayoutTest, SizesOfEveryMode) {
    const Size camera{180, 30};
    EXPECT_EQ(NotchMetrics::size(Mode::collapsed, camera, false, 214), (Size{180, 30}));
    EXPECT_EQ(NotchMetrics::size(Mode::live, camera, false, 214), (Size{180 + 92 + 12, 30}));
    EXPECT_EQ(NotchMetrics::size(Mode::peek, camera, false, 214), (Size{180 + 208 + 12, 30}));
    EXPECT_EQ(NotchMetrics::size(Mode::peek, camera, true, 214), (Size{180 + 208 + 12 + 40, 70}));
    EXPECT_EQ(NotchMetrics::size(Mode::expanded, camera, false, 214), (Size{664, 30 + 214}));
}

TEST_F(NotchLayoutTest, TheMascotsFloorNeedsBothItsSettings) {
    EXPECT_EQ(NotchMetrics::contentHeight(defaults), 214);
    defaults.set("mascotRoams", false);
    EXPECT_EQ(NotchMetrics::contentHeight(defaults), 184);
    EXPECT_EQ(window.frame.height, 24 + 184 + 44) << "the panel follows the setting at once";
    defaults.set("mascotRoams", true);
    defaults.set("mascotEnabled", false);
    EXPECT_EQ(NotchMetrics::contentHeight(defaults), 184);
}

TEST_F(NotchLayoutTest, TheSettingChoosesTheScreen) {
    const std::vector<Screen> both{external, laptop};
    const std::vector<Screen> unmarked{{.name = "A"}, {.name = "B", .isPrimary = true}};
    const std::vector<Screen> headless{{.name = "A"}, {.name = "B"}};
    EXPECT_EQ(chooseScreen(both, "builtIn")->name, "eDP-1");
    EXPECT_EQ(chooseScreen(both, "HDMI-1")->name, "HDMI-1");
    EXPECT_EQ(chooseScreen(both, "DP-7")->name, "eDP-1");
    EXPECT_EQ(chooseScreen(unmarked, "builtIn")->name, "B");
    EXPECT_EQ(chooseScreen(headless, "")->name, "A");
    EXPECT_EQ(chooseScreen({}, "builtIn"), nullptr);
}

TEST_F(NotchLayoutTest, FollowsTheScreenAsItGoesAndComesBack) {
    screens.set({laptop, external});
    EXPECT_EQ(window.frame, (Rect{(1512 - 752) / 2, 0, 752, 24 + 214 + 44}));
    defaults.set("display", "HDMI-1");
    const Rect onExternal{1512 + (2560 - 752) / 2, -200, 752, 24 + 214 + 44};
    EXPECT_EQ(window.frame, onExternal);
    EXPECT_EQ(notch.centerX(), 1512 + 1280);
    screens.set({laptop});
    EXPECT_EQ(window.frame.x, 380);
    screens.set({});
    EXPECT_EQ(window.frame.x, 380);
    screens.set({laptop, external});
    EXPECT_EQ(window.frame, onExternal);

    pointer.moveTo(Point{1512 + 1280, -200}); // the topmost row, where the pointer lands when thrown upwards
    scheduler.advance(Seconds{0.1});
    EXPECT_EQ(mode(), Mode::expanded);
}

TEST_F(NotchLayoutTest, AScreenThatMovesTakesTheHoverAlong) {
    pointer.moveTo(onNotch);
    screens.set({{.name = "DP-1", .frame = {0, 0, 1280, 720}, .isPrimary = true}});
    scheduler.advance(Seconds{1});
    EXPECT_EQ(mode(), Mode::collapsed);
}

TEST_F(NotchLayoutTest, TheNotchHasTheScreensSizeWithinLimits) {
    struct Case {
        const char* name;
        std::optional<Size> camera;
        double topInset, cutoutWidth, cutoutHeight;
        bool hasNotch;
        Size expected;
    };
    for (const auto& c : {
             Case{"no bar", {}, 0, 0, 0, false, {176, 24}},
             Case{"as high as the desktop's bar", {}, 28, 0, 0, false, {176, 28}},
             Case{"a high bar", {}, 48, 0, 0, false, {176, 32}},
             Case{"camera", Size{190, 38}, 0, 0, 0, true, {190, 32}},
             Case{"low camera", Size{190, 12}, 0, 0, 0, true, {190, 24}},
             Case{"described", {}, 28, 200, 30, true, {200, 30}},
             Case{"described width", {}, 28, 200, 0, true, {200, 28}},
             Case{"described height", {}, 0, 0, 31, false, {176, 31}},
             Case{"nonsense", {}, -5, 1e9, -3, true, {480, 24}},
             Case{"negative", {}, 0, -80, -3, false, {176, 24}},
         }) {
        SCOPED_TRACE(c.name);
        defaults.values["cutoutWidth"] = c.cutoutWidth;
        defaults.values["cutoutHeight"] = c.cutoutHeight;
        Screen screen = laptop;
        screen.notch = c.camera;
        screen.topInset = c.topInset;
        screens.set({screen, external});
        EXPECT_EQ(model.fields().hasNotch, c.hasNotch);
        EXPECT_EQ(model.fields().notchSize, c.expected);
    }
    defaults.values["cutoutWidth"] = 200.0;
    defaults.set("display", "HDMI-1");
    EXPECT_FALSE(model.fields().hasNotch) << "the laptop's cut-out is not in the other screen";
}

TEST_F(NotchLayoutTest, AnOddWidthKeepsNotchAndWindowOnOneAxis) {
    screens.set({{.name = "DP-1", .frame = {0, 0, 1365, 768}, .isPrimary = true}});
    EXPECT_EQ(window.frame.x, 306);
    EXPECT_EQ(notch.centerX(), 306 + 376);
}

TEST_F(NotchLayoutTest, AnAnnouncementIsTallWhenItHasMoreToSay) {
    auto brief = session(AgentStatus::done());
    EXPECT_FALSE(NotchMetrics::isTallPeek(brief));
    EXPECT_TRUE(NotchMetrics::isTallPeek(session(AgentStatus::needsYou("Ok?"))));
    brief.summary = "Rewrote the parser, and all of its tests pass again.";
    EXPECT_TRUE(NotchMetrics::isTallPeek(brief));
}

} // namespace kippo
