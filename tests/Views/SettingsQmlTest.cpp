#include "App/SettingsWindow.h"
#include "SettingsFixture.h"

#include <QQuickItem>
#include <QSignalSpy>
#include <QTest>
#include <algorithm>
#include <gtest/gtest.h>

namespace kippo {
namespace {

struct SettingsQmlTest : testing::Test, SettingsFixture {
    SettingsQmlTest() {
        defaults.set("reducedMotion", true);
        qInstallMessageHandler([](QtMsgType type, const QMessageLogContext&, const QString& text) {
            // Offscreen there is nothing to be raised above.
            EXPECT_TRUE(type == QtDebugMsg || type == QtInfoMsg || text.contains(u"raise()")) << qPrintable(text);
        });
        window.show(u"Agents"_qs);
        QTest::qWait(50);
    }
    ~SettingsQmlTest() override { qInstallMessageHandler(nullptr); }

    template <typename Visit> static void visit(QQuickItem* item, const Visit& visitor) {
        if (item->isVisible()) {
            visitor(*item);
            for (QQuickItem* child : item->childItems()) {
                visit(child, visitor);
            }
        }
    }
    /// The item that a screen reader calls `name`.
    QQuickItem* named(const QString& name) {
        QQuickItem* found = nullptr;
        visit(window.view()->contentItem(), [&](QQuickItem& item) {
            found = item.property("spoken") == name || item.property("title") == name ? &item : found;
        });
        return found;
    }
    bool shows(const QString& text) {
        bool found = false;
        visit(window.view()->contentItem(), [&](QQuickItem& item) {
            found = found || (item.inherits("QQuickText") && item.property("text").toString().contains(text));
        });
        return found;
    }
    void click(const QString& name) {
        QQuickItem* const item = named(name);
        ASSERT_TRUE(item) << qPrintable(name);
        const QPointF middle = item->mapToScene(QPointF{item->width() / 2, item->height() / 2});
        QTest::mouseClick(window.view(), Qt::LeftButton, {}, middle.toPoint());
        QTest::qWait(50);
    }

    FakeScreens screens{{{.name = "eDP-1", .frame = {0, 0, 1600, 1000}, .isBuiltIn = true}}};
    FakeDesktopLook look;
    SettingsWindow window{{store, scheduler, defaults, screens, look}};
};

TEST_F(SettingsQmlTest, ConnectsAnAgentAfterShowingTheChange) {
    click(u"Show the change that connecting Claude Code makes"_qs);
    EXPECT_TRUE(shows(u"--kippo-hook --agent claude"_qs));
    EXPECT_TRUE(files.written.empty());
    QTest::keyClick(window.view(), Qt::Key_Escape);
    QTest::qWait(50);
    EXPECT_FALSE(shows(u"--kippo-hook"_qs));

    click(u"Connect Claude Code"_qs);
    EXPECT_TRUE(files.files[claudeFile()].contains("--kippo-hook --agent claude"));
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
    files.full.insert(home + "/.claude/CLAUDE.md");
    QTest::keyClick(window.view(), Qt::Key_Space);
    QTest::qWait(50);
    EXPECT_TRUE(named(u"Ask for a one-line summary"_qs)->property("isOn").toBool()) << "shows what did not come about";
    EXPECT_TRUE(named(u"Dismiss the message"_qs));
}

TEST_F(SettingsQmlTest, PreferencesTakeEffectAtOnceAndFollowTheOutside) {
    window.show(u"General"_qs);
    QTest::qWait(50);
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
