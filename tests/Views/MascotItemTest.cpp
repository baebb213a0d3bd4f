#include "Mascot/Views/MascotItem.h"
#include "Mascot/Views/MascotPainter.h"
#include "PaintedOutside.h"

#include <QQuickWindow>
#include <QSignalSpy>
#include <QTest>
#include <gtest/gtest.h>

namespace kippo {
namespace {

using State = MascotItem::State;

struct Snapshot {
    const char* name;
    MascotState state;
    double time;
};

QImage drawn(const Snapshot& snapshot) {
    QImage image{96, 96, QImage::Format_RGB32};
    image.fill(Qt::black);
    QPainter painter{&image};
    painter.translate(48, 92);
    painter.scale(0.62, 0.62);
    MascotPainter::paint(painter, MascotPose::at(snapshot.state, Seconds{snapshot.time}));
    return image;
}

/// How many pixels differ by more than smoothing of edges does.
int differences(const QImage& one, const QImage& other) {
    int count = 0;
    for (int y = 0; y < one.height(); ++y) {
        for (int x = 0; x < one.width(); ++x) {
            const QColor a = one.pixelColor(x, y);
            const QColor b = other.pixelColor(x, y);
            const int apart =
                std::abs(a.red() - b.red()) + std::abs(a.green() - b.green()) + std::abs(a.blue() - b.blue());
            count += apart > 90 ? 1 : 0;
        }
    }
    return count;
}

// The pictures were looked at. KIPPO_NEW_SNAPSHOTS=1 draws them anew after a change of the drawing that is meant.
TEST(MascotPainterTest, LooksAsItWasApproved) {
    for (const Snapshot& snapshot : {Snapshot{"idle", MascotState::idle, 1},
                                     {"walk", MascotState::walk, 0.58},
                                     {"catch", MascotState::catching, 1.1},
                                     {"cheer", MascotState::cheer, 0.5},
                                     {"panic", MascotState::panic, 0.6},
                                     {"sleep", MascotState::sleep, 12},
                                     {"wake", MascotState::wake, 0.5},
                                     {"talk", MascotState::talk, 0.4}}) {
        const QString file = QStringLiteral(KIPPO_FIXTURES "/mascot/%1.png").arg(QLatin1StringView{snapshot.name});
        const QImage now = drawn(snapshot);
        if (qEnvironmentVariableIsSet("KIPPO_NEW_SNAPSHOTS")) {
            ASSERT_TRUE(now.save(file));
        }
        const QImage approved = QImage{file}.convertToFormat(QImage::Format_RGB32);
        ASSERT_EQ(approved.size(), now.size()) << qPrintable(file);
        EXPECT_LT(differences(now, approved), 40) << qPrintable(file);
    }
}

TEST(MascotPainterTest, StaysWithinHisReach) {
    const QRect reach = MascotPainter::reach.translated(100, 170).toRect();
    for (int state = 0; state <= static_cast<int>(MascotState::talk); ++state) {
        for (double time = 0; time < 4; time += 0.07) {
            const auto pose =
                MascotPose::at(static_cast<MascotState>(state), Seconds{time}, MascotMessage::Mood::excited);
            ASSERT_FALSE(paintsOutside({200, 200}, reach,
                                       [&](QPainter& painter) {
                                           painter.translate(100, 170);
                                           MascotPainter::paint(painter, pose);
                                       }))
                << "state " << state << " at " << time << " s";
        }
    }
}

struct MascotItemTest : testing::Test {
    MascotItemTest() {
        item.setParentItem(window.contentItem());
        item.setSize(48);
        item.QQuickItem::setSize({item.implicitWidth(), item.implicitHeight()});
        window.resize(120, 120);
        window.show();
        EXPECT_TRUE(QTest::qWaitForWindowExposed(&window));
    }
    /// How many frames the window draws in `milliseconds`.
    int frames(int milliseconds) {
        QTest::qWait(60);
        const QSignalSpy swapped{&window, &QQuickWindow::frameSwapped};
        QTest::qWait(milliseconds);
        return static_cast<int>(swapped.size());
    }

    QQuickWindow window;
    MascotItem item;
};

TEST_F(MascotItemTest, DrawsNothingWhileHeStandsStillAndAFilmWhileHeMoves) {
    // However long the window took to come: five seconds from the next blink.
    item.restart(1);
    item.advance(0.15);
    EXPECT_FALSE(item.isMoving());
    EXPECT_EQ(frames(400), 0) << "idle";
    item.setState(State::Walk);
    EXPECT_TRUE(item.isMoving());
    const int walking = frames(400);
    EXPECT_GT(walking, 2);
    EXPECT_LE(walking, 16) << "no more than 30 a second";
    item.setVisible(false);
    EXPECT_FALSE(item.isMoving());
    EXPECT_EQ(frames(200), 0) << "out of sight";
    item.setVisible(true);
    EXPECT_TRUE(item.isMoving());
    item.setReduced(true);
    EXPECT_FALSE(item.isMoving());
    EXPECT_EQ(frames(200), 0) << "less motion";
    item.setReduced(false);
    item.setState(State::Sleep);
    item.restart(4);
    item.advance(0.2);
    EXPECT_EQ(frames(300), 0) << "asleep";
}

TEST_F(MascotItemTest, StirsByHisOwnClockAndEndsAPerformance) {
    const Seconds blink = Seconds{3} + *MascotMotion::stillFor(MascotState::idle, Seconds{3});
    item.restart(blink.count() - 0.15);
    item.advance(0.149);
    EXPECT_FALSE(item.isMoving());
    item.advance(0.002);
    EXPECT_TRUE(item.isMoving()) << "he blinks";
    item.advance(0.2);
    EXPECT_FALSE(item.isMoving());
    item.setState(State::Cheer);
    item.advance(1.7);
    EXPECT_TRUE(item.isMoving());
    item.advance(0.2);
    EXPECT_FALSE(item.isMoving());
    item.restart();
    EXPECT_TRUE(item.isMoving()) << "the same again";
}

} // namespace
} // namespace kippo
