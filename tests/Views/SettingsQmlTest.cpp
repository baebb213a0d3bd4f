#include "App/SettingsWindow.h"
#include "Fakes/FakeDesktop.h"
#include "Fakes/FakeSounds.h"
#include "Mascot/Coach.h"
#include "SettingsFixture.h"
#include "Theme/Appearance.h"
#include "Theme/Palette.h"
#include "WindowProbe.h"

#include <gmock/gmock.h>

namespace kippo {
namespace {

struct SettingsQmlTest : testing::Test, SettingsFixture, WindowProbe {
    SettingsQmlTest() : WindowProbe([this] { return window.view(); }) {
        defaults.set("reducedMotion", true);
        turnTo(u"Agents"_qs);
    }
    void turnTo(const QString& page) {
        window.show(page);
        QTest::qWait(50);
    }

    FakeSounds sounds;
    FakeDesktop desktop;
    std::string sendingFails;
    int sent = 0;
    ReportActions report{.text = [] { return "Claude Code: connected\n"; },
                         .send =
                             [this] {
                                 ++sent;
                                 return sendingFails;
                             }};
    SettingsWindow window{
        {store, scheduler, defaults, screens, look, loginItem, sounds, desktop, hotKeys, "1.2.3", report}};
    const QStringList pages{u"General"_qs,         u"Notch"_qs,         u"Agents"_qs,
                            u"Alerts & sounds"_qs, u"Focus & Kippo"_qs, u"About"_qs};
};

TEST_F(SettingsQmlTest, ConnectsAnAgentAfterShowingTheChange) {
    click(u"Show the change that connecting Claude Code makes"_qs);
    EXPECT_TRUE(shows(u"--kippo-hook --agent claude"_qs));
    EXPECT_TRUE(userFiles.written.empty());
    QTest::keyClick(window.view(), Qt::Key_Escape);
    QTest::qWait(50);
    EXPECT_FALSE(shows(u"--kippo-hook"_qs));

    click(u"Connect Claude Code"_qs);
    EXPECT_TRUE(userFiles.files[claudeFile()].contains("--kippo-hook --agent claude"));
    EXPECT_TRUE(shows(u"Connected; nothing heard yet"_qs));
    scheduler.advance(Seconds{1});
    hear(HookAgent::claude);
    QTest::qWait(20);
    EXPECT_TRUE(shows(u"Connected and heard from just now"_qs));
    click(u"Disconnect Claude Code"_qs);
    EXPECT_TRUE(named(u"Connect Claude Code"_qs));
}

TEST_F(SettingsQmlTest, EverySwitchCanBeReachedAndThrownByKeyboard) {
    click(u"More settings of Claude Code"_qs);
    QTest::keyClick(window.view(), Qt::Key_Tab);
    QTest::keyClick(window.view(), Qt::Key_Space);
    EXPECT_TRUE(store.summaryInstructions().contains(HookAgent::claude));
    userFiles.full.insert(home.path(".claude/CLAUDE.md"));
    QTest::keyClick(window.view(), Qt::Key_Space);
    QTest::qWait(50);
    EXPECT_TRUE(named(u"Ask for a one-line summary"_qs)->property("isOn").toBool()) << "shows what did not come about";
    EXPECT_TRUE(named(u"Dismiss the message"_qs));
}

TEST_F(SettingsQmlTest, PreferencesTakeEffectAtOnceAndFollowTheOutside) {
    turnTo(u"General"_qs);
    click(u"Open when the pointer rests on the notch"_qs);
    EXPECT_FALSE(defaults.get<bool>("openOnHover"));
    defaults.set("openOnHover", true);
    EXPECT_TRUE(named(u"Open when the pointer rests on the notch"_qs)->property("isOn").toBool());

    defaults.set("display", std::string{"DP-2"});
    QTest::qWait(20);
    EXPECT_TRUE(shows(u"DP-2 (not connected)"_qs));
    click(u"The built-in display"_qs);
    EXPECT_EQ(defaults.get<std::string>("display"), "builtIn");
}

TEST_F(SettingsQmlTest, EverySwitchOfEveryPageWritesItsKeyAndHasAName) {
    const std::map<QString, std::vector<std::pair<QString, std::string>>> switches{
        {u"General"_qs,
         {{u"Show Kippo in the tray"_qs, "showMenuBarIcon"},
          {u"Open when the pointer rests on the notch"_qs, "openOnHover"},
          {u"Use hot keys"_qs, "hotKeysEnabled"}}},
        {u"Notch"_qs,
         {{u"Show what is going on"_qs, "showLiveActivity"},
          {u"Status lights"_qs, "statusLights"},
          {u"Focus page"_qs, "showFocusTab"},
          {u"Reduce motion"_qs, "reducedMotion"}}},
        {u"Alerts & sounds"_qs, {{u"With a sound"_qs, "agentSound"}, {u"Announce agents"_qs, "agentAlerts"}}},
        {u"Focus & Kippo"_qs,
         {{u"Start breaks by themselves"_qs, "autoStartBreaks"},
          {u"Let him roam"_qs, "mascotRoams"},
          {u"Night owl"_qs, "mascotNightOwl"}}},
    };
    window.view()->resize(880, 1400); // so that everything is in sight
    for (const QString& page : pages) {
        turnTo(page);
        EXPECT_EQ(unnamedControls(), QStringList{}) << qPrintable(page);
        const auto found = switches.find(page);
        for (const auto& [title, key] : found == switches.end() ? decltype(found->second){} : found->second) {
            const bool before = defaults.get<bool>(key);
            click(title);
            EXPECT_EQ(defaults.get<bool>(key), !before) << key;
            EXPECT_EQ(named(title)->property("isOn").toBool(), !before) << key;
        }
    }
}

TEST_F(SettingsQmlTest, TypedMinutesAreBroughtWithinTheirBounds) {
    turnTo(u"Focus & Kippo"_qs);
    QQuickItem* box = nullptr;
    for (QQuickItem* item : shownItems(named(u"Focus"_qs))) {
        box = item->inherits("QQuickSpinBox") ? item : box;
    }
    ASSERT_TRUE(box);
    box->forceActiveFocus(Qt::TabFocusReason);
    press(Qt::Key_Up);
    EXPECT_EQ(defaults.get<std::int64_t>("focusMinutes"), 30);
    press(Qt::Key_PageUp);
    EXPECT_EQ(defaults.get<std::int64_t>("focusMinutes"), 55);
    for (const auto& [typed, stored] : {std::pair{"999", 180}, {"0", 1}, {"42", 42}}) {
        press(Qt::Key_A, Qt::ControlModifier);
        for (const char* digit = typed; *digit; ++digit) {
            press(static_cast<Qt::Key>(*digit));
        }
        press(Qt::Key_Return);
        EXPECT_EQ(defaults.get<std::int64_t>("focusMinutes"), stored) << typed;
        EXPECT_EQ(box->property("displayText"), QString::number(stored)) << "shows what is not so";
    }
}

TEST_F(SettingsQmlTest, TellsWhatDidNotComeAboutOutside) {
    hotKeys.set({{{'A'}, "Open Agents", HotKeyRecord::State::takenByAnother}});
    loginItem.refuses = true;
    turnTo(u"General"_qs);
    click(u"Start at login"_qs);
    EXPECT_TRUE(shows(u"Start at login could not be changed: Permission denied."_qs));
    EXPECT_FALSE(named(u"Start at login"_qs)->property("isOn").toBool());
    EXPECT_TRUE(shows(u"Held by another program"_qs));
    window.setNotice(u"The settings could not be read."_qs);
    EXPECT_TRUE(shows(u"The settings could not be read."_qs));
    click(u"Dismiss the message"_qs);
    window.view()->close();
    turnTo({});
    EXPECT_FALSE(shows(u"The settings could not be read."_qs)) << "is told twice";
}

TEST_F(SettingsQmlTest, PlaysSoundsAndQuietsTheMascot) {
    turnTo(u"Alerts & sounds"_qs);
    click(u"Play Funk"_qs);
    click(u"Play Blow"_qs);
    EXPECT_THAT(sounds.played, testing::ElementsAre(Sound::funk, Sound::blow));
    turnTo(u"Focus & Kippo"_qs);
    click(u"Quiet for the rest of today"_qs);
    EXPECT_TRUE(Coach::quiet(defaults, scheduler.now()).until);
    EXPECT_TRUE(shows(u"He is quiet until midnight."_qs));
    click(u"Let him speak again"_qs);
    EXPECT_EQ(Coach::quiet(defaults, scheduler.now()), Coach::Quiet{});
}

TEST_F(SettingsQmlTest, AReportIsReadBeforeItGoes) {
    window.showReport();
    QTest::qWait(50);
    EXPECT_TRUE(shows(u"Claude Code: connected"_qs));
    EXPECT_EQ(sent, 0);
    click(u"Copy the report"_qs);
    EXPECT_EQ(desktop.clipboard, "Claude Code: connected\n");
    sendingFails = "There is no mail program.";
    click(u"Send the report by mail"_qs);
    EXPECT_TRUE(shows(u"There is no mail program."_qs));
    sendingFails.clear();
    click(u"Send the report by mail"_qs);
    EXPECT_EQ(sent, 2);
    EXPECT_FALSE(shows(u"Claude Code: connected"_qs)) << "stays open when it has gone";
}

TEST_F(SettingsQmlTest, EveryAccentCanBeReadInBothLooksAndOnEveryStyle) {
    const Appearance appearance{defaults, look};
    turnTo(u"Notch"_qs);
    click(u"Accent: Yellow"_qs);
    EXPECT_EQ(defaults.get<std::string>("accent"), "yellow");
    click(u"Style: Midnight"_qs);
    EXPECT_EQ(appearance.surface(), Palette::surface(u"midnight"_qs));
    for (const std::uint32_t desktopAccent : {0x000000U, 0xffffffU, 0xffff00U, 0x00003fU, 0x808080U}) {
        look.setAccent(desktopAccent);
        for (const char* accent :
             {"system", "blue", "purple", "pink", "red", "orange", "yellow", "green", "graphite"}) {
            defaults.set("accent", accent);
            EXPECT_GE(Palette::contrast(appearance.accent(), appearance.accentInk()), 4.5) << accent;
            for (const Palette::Choice& style : Palette::styles()) {
                EXPECT_GE(Palette::contrast(appearance.panelAccent(), QColor{style.colour}), 4.5) << accent;
            }
            for (const bool isDark : {false, true}) {
                look.set(isDark);
                EXPECT_GE(Palette::contrast(appearance.accentText(), isDark ? QColor{0x29, 0x29, 0x2c} : Qt::white),
                          4.5)
                    << accent;
            }
        }
    }
}

TEST_F(SettingsQmlTest, FollowsTheDesktopsLookAndLeavesNothingBehindWhenClosed) {
    const auto corner = [this] { return window.view()->grabWindow().pixelColor(860, 640).lightness(); };
    EXPECT_GT(corner(), 200);
    look.set(true);
    QTest::qWait(50);
    EXPECT_LT(corner(), 60);
    const std::size_t pending = scheduler.pendingCount();
    window.view()->close();
    EXPECT_FALSE(window.view());
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    EXPECT_LT(scheduler.pendingCount(), pending);
    look.set(false);
    window.show();
    EXPECT_TRUE(window.view());
}

} // namespace
} // namespace kippo
