#include "Fakes/FakeScheduler.h"
#include "Fakes/FakeSounds.h"
#include "Focus/Views/FigurePainter.h"
#include "Focus/Views/FocusViewModel.h"
#include "Focus/Views/StretchFigure.h"
#include "PaintedOutside.h"
#include "Samples.h"
#include "WindowProbe.h"

#include <QSignalSpy>

namespace kippo {
namespace {

using namespace std::chrono_literals;
using Phase = FocusStore::Phase;

/// The focus page in a window of the open panel's size, on a clock that the test moves.
struct FocusPageTest : testing::Test, WarningsFail {
    FocusPageTest() {
        store.start();
        stretch.onBegin = [this] { stretches.start(); };
        view.setColor(Qt::black);
        view.setResizeMode(QQuickView::SizeRootObjectToView);
        view.setGeometry(0, 0, 624, 178);
        view.setInitialProperties({{QStringLiteral("timer"), QVariant::fromValue(&timer)},
                                   {QStringLiteral("stretch"), QVariant::fromValue(&stretch)}});
        view.setSource(QUrl{QStringLiteral("qrc:/qt/qml/Kippo/FocusPage.qml")});
        view.show();
        EXPECT_TRUE(QTest::qWaitForWindowActive(&view));
        view.rootObject()->forceActiveFocus(Qt::TabFocusReason);
    }

    /// How many frames the window draws of what `change` does; waits for `wanted` of them, and then for more.
    template <typename Change> int frames(const Change& change, int wanted = 0) {
        QTest::qWait(250); // what came before, also what fades
        const QSignalSpy swapped{&view, &QQuickWindow::frameSwapped};
        change();
        (void)QTest::qWaitFor([&] { return swapped.size() >= wanted; });
        QTest::qWait(200);
        return static_cast<int>(swapped.size());
    }

    /// The texts that can be seen, and that every one of them has the room it needs.
    QStringList texts() {
        QTest::qWait(20);
        QStringList found;
        for (const QQuickItem* item : shownItems(view.rootObject())) {
            if (isText(item)) {
                found.append(item->property("text").toString());
                EXPECT_FALSE(item->property("truncated").toBool()) << qPrintable(found.back());
                const QRectF place = item->mapRectToScene(item->boundingRect());
                EXPECT_TRUE(QRectF(0, 0, 624, 178).contains(place)) << qPrintable(found.back());
            }
        }
        return found;
    }

    FakeScheduler scheduler;
    FakeDefaults defaults = unchangedSettings();
    FakeSounds sounds;
    FocusStore store{scheduler, defaults};
    StretchStore stretches{scheduler, sounds};
    FocusViewModel timer{store, scheduler, defaults};
    StretchViewModel stretch{stretches, scheduler};
    QQuickView view;
};

TEST_F(FocusPageTest, SaysInEveryStateWhatItIsAndWhatCanBeDone) {
    const auto shows = [this](const QStringList& wanted) {
        const QStringList found = texts();
        for (const QString& text : wanted) {
            EXPECT_TRUE(found.contains(text)) << qPrintable(text) << " in " << qPrintable(found.join(u'|'));
        }
    };
    shows({"Ready when you are", "0 focus sessions today", "Start 25 min", "Break", "Stretch", "45"});
    EXPECT_EQ(timer.toggleSpoken(), "Start a 25-minute focus");
    timer.toggle();
    shows(
        {"Heads down", "Round 1 of 4 · 0 focus sessions today", "Next: 5 min break", "Pause", "Finish round", "Reset"});
    EXPECT_TRUE(timer.note().startsWith("until "));
    timer.toggle();
    shows({"paused", "Resume"});
    timer.skip();
    shows({"Stretch, sip, look away", "1 focus session today", "Skip break", "Stretch"});
    timer.skip();
    shows({"Nice. Another round?", "1 focus session today"});
    timer.setMinutes(180);
    shows({"Start 180 min"});
    for (int round = 0; round < 3; ++round) {
        store.begin(Phase::focus, 25);
        store.skip();
    }
    shows({"Long break. You earned it"});
    stretch.begin();
    shows({"Neck tilts", "Left side", "30 s", "Next", "Previous", "End"});
    scheduler.advance(16s);
    shows({"Right side", "14 s"});
    for (int i = 0; i < 4; ++i) {
        stretch.next();
        texts();
    }
    shows({"Chest opener", "Finish"});
    stretch.next();
    shows({"All loosened up 🎉", "Last one, for your eyes: look at something about 20 feet away for 20 seconds.",
           "Done"});
}

TEST_F(FocusPageTest, TheClockCostsAFrameASecondAndNoneWhileItStands) {
    EXPECT_EQ(frames([] {}), 0) << "idle";
    EXPECT_EQ(frames([this] { scheduler.advance(10s); }), 0);
    timer.toggle();
    EXPECT_EQ(frames([] {}), 0) << "between two seconds";
    for (int second = 0; second < 3; ++second) {
        EXPECT_EQ(frames([this] { scheduler.advance(1s); }, 1), 1);
    }
    timer.toggle();
    EXPECT_EQ(frames([this] { scheduler.advance(10s); }), 0) << "paused";
    timer.toggle();
    QTest::qWait(50);
    const auto shown = scheduler.pendingCount();
    view.rootObject()->setVisible(false);
    EXPECT_EQ(scheduler.pendingCount(), shown - 1) << "out of sight, only the store's own timer is left";
}

TEST_F(FocusPageTest, TheFigureMovesOnlyWhileItIsSeen) {
    stretch.begin();
    scheduler.advance(1s);
    auto* figure = view.rootObject()->findChild<StretchFigure*>();
    ASSERT_TRUE(figure);
    EXPECT_TRUE(figure->isMoving());
    int drawn = frames([this] {
        for (int i = 0; i < 10; ++i) {
            scheduler.advance(33ms);
            QTest::qWait(33);
        }
    });
    EXPECT_GT(drawn, 3);
    EXPECT_LE(drawn, 17) << "no more than 30 a second";
    figure->setReduced(true);
    drawn = frames([this] { scheduler.advance(400ms); }, 0);
    EXPECT_LE(drawn, 2) << "still pictures";
    figure->setReduced(false);
    view.rootObject()->setVisible(false);
    EXPECT_FALSE(figure->isMoving());
    view.rootObject()->setVisible(true);
    for (int i = 0; i < 5; ++i) {
        stretch.next();
    }
    EXPECT_FALSE(figure->isMoving());
    EXPECT_EQ(frames([this] { scheduler.advance(10s); }), 0) << "the closing tip stands still";
}

TEST_F(FocusPageTest, IsWorkedByTheKeyboard) {
    QTest::keyClick(&view, Qt::Key_Right);
    EXPECT_EQ(timer.minutes(), 30);
    QTest::keyClick(&view, Qt::Key_Left);
    QTest::keyClick(&view, Qt::Key_Left);
    EXPECT_EQ(defaults.get<std::int64_t>("focusMinutes"), 20);
    QTest::keyClick(&view, Qt::Key_Space);
    EXPECT_TRUE(store.isRunning());
    QTest::keyClick(&view, Qt::Key_Left);
    EXPECT_EQ(timer.minutes(), 20) << "not while it runs";
    QTest::keyClick(&view, Qt::Key_Space);
    EXPECT_TRUE(store.isPaused());
    QTest::keyClick(&view, Qt::Key_Tab);
    QTest::keyClick(&view, Qt::Key_Tab);
    QTest::keyClick(&view, Qt::Key_Return);
    EXPECT_EQ(store.phase(), Phase::idle) << "the third button resets";
    stretch.begin();
    QTest::keyClick(&view, Qt::Key_Right);
    QTest::keyClick(&view, Qt::Key_Space);
    EXPECT_EQ(stretches.index(), 2);
    QTest::keyClick(&view, Qt::Key_Left);
    EXPECT_EQ(stretches.index(), 1);
}

TEST(FigurePainterTest, StaysWithinThePicture) {
    constexpr int height = 160;
    const int width = static_cast<int>(height * FigurePainter::width);
    constexpr int margin = 40;
    for (const StretchPose& pose : StretchRoutine::poses) {
        for (double time = 0; time < 30; time += 0.7) {
            const QSize size{width + 2 * margin, height + 2 * margin};
            ASSERT_FALSE(paintsOutside(size, {margin, margin, width, height},
                                       [&](QPainter& painter) {
                                           painter.translate(margin + width / 2.0, margin + height);
                                           painter.scale(height, height);
                                           FigurePainter::paint(painter, pose.motion(Seconds{time}));
                                       }))
                << pose.name << " at " << time << " s";
        }
    }
}

} // namespace
} // namespace kippo
