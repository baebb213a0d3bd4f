#include "App/WelcomeWindow.h"
#include "SettingsFixture.h"
#include "WindowProbe.h"

namespace kippo {
namespace {

struct WelcomeWindowTest : testing::Test, SettingsFixture, WindowProbe {
    WelcomeWindowTest() : WindowProbe([this] { return window.view(); }) {
        defaults.set("reducedMotion", true);
        window.onEnded = [this] { ++ended; };
        open();
    }

    void open() {
        window.show();
        QTest::qWait(50);
    }

    int ended = 0;
    WelcomeWindow window{
        {store, scheduler, defaults, screens, look, loginItem, hotKeys, {HookAgent::claude, HookAgent::codex}}};
};

TEST_F(WelcomeWindowTest, FromFirstToLastByKeyboardAndPointer) {
    hotKeys.set({{{'A'}, "Open Agents", HotKeyRecord::State::held}});
    EXPECT_TRUE(shows(u"Hello, I’m Kippo"_qs));
    EXPECT_EQ(unnamedControls(), QStringList{});
    press(Qt::Key_Return);

    EXPECT_TRUE(shows(u"Connect your agents"_qs));
    EXPECT_EQ(unnamedControls(), QStringList{});
    EXPECT_TRUE(shows(u"Claude Code"_qs));
    EXPECT_FALSE(shows(u"Gemini CLI"_qs)) << "is not on this machine";
    click(u"Show the change that connecting Claude Code makes"_qs);
    EXPECT_TRUE(shows(u"--kippo-hook --agent claude"_qs));
    press(Qt::Key_Escape);
    EXPECT_TRUE(window.view()) << "Escape put away more than the sheet";
    EXPECT_TRUE(userFiles.written.empty()) << "connected without being asked";
    click(u"Connect all 2"_qs);
    EXPECT_EQ(store.connected(), (std::set{HookAgent::claude, HookAgent::codex}));
    click(u"Disconnect Codex"_qs);
    EXPECT_EQ(store.connected(), std::set{HookAgent::claude});
    click(u"Continue"_qs);

    click(u"Start at login"_qs);
    EXPECT_TRUE(loginItem.on);
    EXPECT_EQ(unnamedControls(), QStringList{});
    press(Qt::Key_Left, Qt::AltModifier);
    EXPECT_TRUE(shows(u"Connect your agents"_qs));
    click(u"Continue"_qs);
    click(u"Continue"_qs);

    EXPECT_TRUE(shows(u"The notch is up there"_qs));
    EXPECT_TRUE(shows(u"Open Agents"_qs));
    EXPECT_EQ(ended, 0);
    press(Qt::Key_Return);
    EXPECT_EQ(ended, 1);
    EXPECT_FALSE(window.view());
}

TEST_F(WelcomeWindowTest, CanBeLeftAtEveryPointAndThenDidNothing) {
    for (int step = 0; step < 4; ++step) {
        open();
        for (int i = 0; i < step; ++i) {
            press(Qt::Key_Right, Qt::AltModifier);
        }
        if (step == 1) {
            window.view()->close();
        } else if (step == 2) {
            click(u"Skip the rest"_qs);
        } else {
            press(Qt::Key_Escape);
        }
        EXPECT_EQ(ended, step + 1);
        EXPECT_FALSE(window.view());
    }
    EXPECT_TRUE(userFiles.written.empty());
    EXPECT_FALSE(loginItem.on);
}

} // namespace
} // namespace kippo
