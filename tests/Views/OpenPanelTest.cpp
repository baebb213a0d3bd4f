#include "Mascot/MascotLines.h"
#include "PanelQml.h"

#include <QAccessible>
#include <QSignalSpy>

namespace kippo {
namespace {

using Tab = NotchViewModel::Tab;

/// The panel with the keyboard, as after a hot key.
struct OpenPanelTest : testing::Test, PanelQml {
    void openByKey(NotchTab tab) {
        defaults.set("reducedMotion", true);
        view.requestActivate();
        ASSERT_TRUE(QTest::qWaitForWindowActive(&view));
        application.notch().toggle(tab);
        QTest::qWait(50);
    }
    void press(Qt::Key key, Qt::KeyboardModifiers modifiers = {}) { QTest::keyClick(&view, key, modifiers); }
    Tab page() const { return panel.notch.page(); }
};

TEST_F(OpenPanelTest, TheKeyboardTurnsPagesPinsAndCloses) {
    openByKey(NotchTab::agents);
    EXPECT_TRUE(window.hasKeyboard);
    press(Qt::Key_Tab, Qt::ControlModifier);
    EXPECT_EQ(page(), Tab::Focus);
    press(Qt::Key_PageUp, Qt::ControlModifier);
    EXPECT_EQ(page(), Tab::Agents);
    press(Qt::Key_Backtab, Qt::ControlModifier | Qt::ShiftModifier);
    EXPECT_EQ(page(), Tab::Focus);

    // Round by Tab there is the page bar, where left and right turn pages, and the pin.
    bool pinned = false;
    bool turned = false;
    for (int stop = 0; stop < 40 && !(pinned && turned); ++stop) {
        press(Qt::Key_Tab);
        const QAccessibleInterface* at = QAccessible::queryAccessibleInterface(view.activeFocusItem());
        ASSERT_TRUE(at);
        if (at->role() == QAccessible::PageTab && !turned) {
            press(Qt::Key_Right);
            turned = page() == Tab::Agents;
        } else if (at->text(QAccessible::Name) == "Keep open") {
            press(Qt::Key_Space);
            pinned = panel.notch.isPinned();
        }
    }
    EXPECT_TRUE(turned && pinned);
    press(Qt::Key_Escape);
    EXPECT_EQ(mode(), NotchModel::Mode::collapsed);
    EXPECT_FALSE(window.hasKeyboard);
}

/// Calls `see` with each interface that a screen reader finds below `at`.
void walk(QAccessibleInterface* at, const std::function<void(QAccessibleInterface&)>& see) {
    if (!at || at->state().invisible) {
        return;
    }
    see(*at);
    for (int child = 0; child < at->childCount(); ++child) {
        walk(at->child(child), see);
    }
}

TEST_F(OpenPanelTest, AScreenReaderFindsANameOnEverythingThatIsPressed) {
    for (const NotchTab tab : {NotchTab::agents, NotchTab::focus}) {
        openByKey(tab);
        int pressed = 0;
        walk(QAccessible::queryAccessibleInterface(&view), [&](QAccessibleInterface& at) {
            if (at.role() == QAccessible::Button || at.role() == QAccessible::PageTab) {
                ++pressed;
                EXPECT_FALSE(at.text(QAccessible::Name).isEmpty());
            }
        });
        EXPECT_GE(pressed, 4);
    }
}

TEST_F(OpenPanelTest, AMessageTakesThePointerBesideTheShapeAndIsAnswered) {
    defaults.set("reducedMotion", true);
    MascotLines::Random random{2};
    application.notch().showMascot(MascotLines::breakOver(25, random));
    QTest::qWait(50);
    const QRectF bubble = panel.stage.bubble();
    EXPECT_NEAR(bubble.center().x(), view.width() / 2.0, 1);
    EXPECT_GE(bubble.top(), panel.stage.shapeHeight());
    EXPECT_LE(bubble.bottom(), view.height());

    pointer.moveTo(Point{window.frame.x + bubble.center().x(), window.frame.y + bubble.center().y()});
    scheduler.advance(Seconds{60});
    EXPECT_TRUE(panel.mascot.speaks()) << "the pointer rests on it";
    panel.notch.open();
    QTest::qWait(20);
    EXPECT_FALSE(panel.mascot.speaks());
    EXPECT_TRUE(panel.stage.bubble().isEmpty());
}

TEST_F(OpenPanelTest, TheMascotWalksHisFloorAndCostsNothingWhenHeStands) {
    application.notch().expand(NotchTab::agents, true);
    MascotItem* kippo = nullptr;
    ASSERT_TRUE(QTest::qWaitFor([&] { return (kippo = shownMascot(view)) != nullptr; }));
    stores.mascotStage.setState(MascotState::walk);
    const double from = kippo->x();
    scheduler.advance(Seconds{1});
    kippo->advance(1);
    EXPECT_TRUE(kippo->isMoving());
    EXPECT_NE(kippo->x(), from);
    stores.mascotStage.setState(MascotState::idle);
    kippo->advance(1);
    EXPECT_FALSE(kippo->isMoving());
}

} // namespace
} // namespace kippo
