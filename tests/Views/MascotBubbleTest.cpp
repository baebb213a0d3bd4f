#include "Mascot/MascotLines.h"
#include "Mascot/Views/MascotViewModel.h"
#include "WindowProbe.h"

namespace kippo {
namespace {

using Case = MascotMessage::Action::Case;

struct MascotBubbleTest : testing::Test, WarningsFail {
    MascotBubbleTest() {
        model.onAction = [this](const MascotMessage::Action& action) { actions.push_back(action.value); };
        model.onAttended = [this](bool attended) { isAttended = attended; };
        view.setColor(QColor{0x6f, 0x7f, 0x95});
        view.setInitialProperties({{QStringLiteral("message"), QVariant::fromValue(&model)}});
        view.setSource(QUrl{QStringLiteral("qrc:/qt/qml/Kippo/MascotBubble.qml")});
        view.show();
        EXPECT_TRUE(QTest::qWaitForWindowActive(&view));
    }

    QSizeF wanted() const {
        QTest::qWait(30);
        return {view.rootObject()->implicitWidth(), view.rootObject()->implicitHeight()};
    }

    MascotViewModel model;
    std::vector<Case> actions;
    bool isAttended = false;
    QQuickView view;
    MascotLines::Random random{3};
};

TEST_F(MascotBubbleTest, IsAnsweredByTheKeyboard) {
    model.show(MascotLines::lateNight(1, 40, random));
    EXPECT_TRUE(view.rootObject()->isVisible());
    QMetaObject::invokeMethod(view.rootObject(), "takeFocus");
    EXPECT_TRUE(isAttended) << "the keyboard holds it open as the pointer does";
    QTest::keyClick(&view, Qt::Key_Return);
    QTest::keyClick(&view, Qt::Key_Right);
    QTest::keyClick(&view, Qt::Key_Space);
    QTest::keyClick(&view, Qt::Key_Left);
    QTest::keyClick(&view, Qt::Key_Return);
    QTest::keyClick(&view, Qt::Key_Escape);
    EXPECT_EQ(actions, (std::vector{Case::goodNight, Case::dismiss, Case::goodNight, Case::dismiss}));
    model.show({});
    EXPECT_TRUE(QTest::qWaitFor([this] { return !view.rootObject()->isVisible(); })) << "it has faded out";
}

TEST_F(MascotBubbleTest, GrowsWithItsTextAndThePointerPutsHidingOff) {
    MascotMessage message = MascotLines::focusDone(false, true, random);
    message.text = "Ding!";
    model.show(message);
    const QSizeF small = wanted();
    message.id += 1;
    message.text = std::string(30, 'a') + " " + std::string(600, 'b');
    model.show(message);
    EXPECT_GT(wanted().height(), small.height() + 30);
    EXPECT_LE(wanted().width(), 400);
    EXPECT_LE(wanted().height(), 180);

    QTest::mouseMove(&view, QPoint{30, 30});
    QTest::qWait(20);
    EXPECT_TRUE(isAttended);
}

TEST_F(MascotBubbleTest, AnAnswerMayTakeTheMessageAway) {
    model.onAction = [this](const MascotMessage::Action& action) {
        model.show({});
        actions.push_back(action.value);
    };
    model.show(MascotLines::breakOver(25, random));
    model.answerPrimary();
    model.answerPrimary();
    model.dismiss();
    EXPECT_EQ(actions, (std::vector{Case::startFocus})) << "nothing is asked any more";
}

} // namespace
} // namespace kippo
