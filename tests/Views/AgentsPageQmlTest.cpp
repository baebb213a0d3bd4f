#include "App/DemoSessions.h"
#include "PanelQml.h"
#include "Samples.h"

namespace kippo {
namespace {

/// The open page under a pointer and a keyboard.
struct AgentsPageQmlTest : testing::Test, PanelQml {
    std::vector<AgentSession> sessions = DemoSessions::afternoon(scheduler.now());
    std::vector<Pid> stopped;

    AgentsPageQmlTest() {
        panel.agents.onStop = panel.leftBehind.onStop = [this](Pid pid) { stopped.push_back(pid); };
        arrange("open");
        if (!QTest::qWaitForWindowActive(&view)) {
            ADD_FAILURE() << "the window gets no keyboard";
        }
    }

    void show() {
        application.showSessions(sessions);
        QTest::qWait(20);
    }
    template <typename Holds> QQuickItem* first(const Holds& holds) const {
        const auto all = items();
        const auto found = std::ranges::find_if(all, holds);
        return found == all.end() ? nullptr : *found;
    }
    QQuickItem* find(const QString& text) const {
        return first([&](const QQuickItem* item) { return isText(item) && item->property("text") == text; });
    }
    QQuickItem* list() const {
        return first([](const QQuickItem* item) { return item->inherits("QQuickListView"); });
    }
    void click(const QString& text) {
        const QQuickItem* item = find(text);
        ASSERT_TRUE(item) << qPrintable(text);
        QTest::mouseClick(&view, Qt::LeftButton, {}, middleOf(item));
        QTest::qWait(100); // a few frames, in which a row comes into sight
    }
};

TEST_F(AgentsPageQmlTest, AClickUnfoldsARowAndAnotherTakesItsPlace) {
    click("storefront");
    EXPECT_EQ(panel.agents.expandedId(), "work");
    EXPECT_TRUE(find("1.2M tokens, $3.41 today") && find("Dismiss"));
    panel.agents.toggle("second");
    QTest::qWait(100);
    EXPECT_FALSE(find("1.2M tokens, $3.41 today"));
    click("atlas");
    EXPECT_EQ(panel.agents.expandedId(), "");
    EXPECT_FALSE(find("Dismiss"));
}

TEST_F(AgentsPageQmlTest, AnExpandedRowKeepsItsPlaceWhileTheListGoesOn) {
    click("storefront");
    const double scrolled = list()->property("contentY").toDouble();
    sessions[1].cpu = 40;
    sessions[1].children[0].rssKB *= 2;
    show();
    EXPECT_EQ(list()->property("contentY").toDouble(), scrolled);
    EXPECT_TRUE(find("Dismiss"));
    std::swap(sessions[1], sessions[2]);
    show();
    EXPECT_EQ(panel.agents.expandedId(), "work");
    sessions.erase(sessions.begin() + 2);
    show();
    EXPECT_EQ(panel.agents.expandedId(), "");
}

TEST_F(AgentsPageQmlTest, APortOpensInTheBrowserAndActionsReachTheirSession) {
    std::vector<std::string> dismissed;
    panel.agents.onDismiss = [&](const AgentSession& session) { dismissed.push_back(session.id); };
    click("storefront");
    click("Copy session ID");
    EXPECT_EQ(desktop.clipboard, "work");
    click("Open folder");
    click("Dismiss");
    EXPECT_EQ(dismissed, std::vector<std::string>{"work"});
    click("Left behind");
    click(":8000");
    EXPECT_EQ(desktop.opened, std::vector<std::string>{"/home/dev/storefront"});
    EXPECT_EQ(urls.opened, std::vector<std::string>{"http://localhost:8000"});
}

TEST_F(AgentsPageQmlTest, OnlyTwoClicksOnOneProcessStopIt) {
    click("Left behind");
    std::vector<DetachedProcess> left = DemoSessions::leftRunning();
    const QPoint place = middleOf(find("Stop"));
    click("Stop");
    EXPECT_TRUE(find("Click again to stop it"));
    // Another process takes the row under the pointer.
    std::swap(left[0], left[1]);
    panel.leftBehind.show(left);
    QTest::qWait(20);
    QTest::mouseClick(&view, Qt::LeftButton, {}, place);
    EXPECT_TRUE(stopped.empty());
    QTest::mouseClick(&view, Qt::LeftButton, {}, place);
    EXPECT_EQ(stopped, std::vector<Pid>{left[0].proc.pid});
    QTest::qWait(20);
    EXPECT_TRUE(find("Stopping…"));
}

TEST_F(AgentsPageQmlTest, TheKeyboardReachesRowsAndTheirActions) {
    list()->forceActiveFocus();
    QTest::keyClick(&view, Qt::Key_Down);
    QTest::keyClick(&view, Qt::Key_Down);
    QTest::keyClick(&view, Qt::Key_Return);
    EXPECT_EQ(panel.agents.expandedId(), "work");
    QTest::qWait(20);
    QTest::keyClick(&view, Qt::Key_Tab);
    QTest::keyClick(&view, Qt::Key_Tab);
    QTest::keyClick(&view, Qt::Key_Space);
    EXPECT_EQ(desktop.clipboard, "work");
    list()->forceActiveFocus();
    QTest::keyClick(&view, Qt::Key_Escape);
    EXPECT_EQ(panel.agents.expandedId(), "");
}

TEST_F(AgentsPageQmlTest, BeginsAnewForWhoComesBackLater) {
    click("storefront");
    click("Usage");
    application.notch().collapse();
    scheduler.advance(AgentsViewModel::memory / 2);
    application.notch().expand(NotchTab::agents, true);
    EXPECT_EQ(panel.agents.section(), AgentsViewModel::Section::Usage);
    application.notch().collapse();
    scheduler.advance(AgentsViewModel::memory * 2);
    application.notch().expand(NotchTab::agents, true);
    EXPECT_EQ(panel.agents.section(), AgentsViewModel::Section::Sessions);
    EXPECT_EQ(panel.agents.expandedId(), "");
}

} // namespace
} // namespace kippo
