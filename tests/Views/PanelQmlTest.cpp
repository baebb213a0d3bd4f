#include "PanelQml.h"
#include "Samples.h"
#include "Theme/Palette.h"

#include <QQmlEngine>
#include <QSignalSpy>

namespace kippo {
namespace {

struct ShownText {
    QString text;
    QRectF ink; ///< what its glyphs cover, in the panel's coordinates
};

/// The texts that are on screen, cut to what clips them.
std::vector<ShownText> shownTexts(QQuickView& view) {
    std::vector<ShownText> texts;
    for (const QQuickItem* item : shownItems(view.rootObject())) {
        const double width = std::min(item->property("contentWidth").toDouble(), item->width());
        const double height = item->property("contentHeight").toDouble();
        QRectF ink = item->mapRectToScene(QRectF{0, (item->height() - height) / 2, width, height});
        for (const QQuickItem* above = item->parentItem(); above; above = above->parentItem()) {
            if (above->clip()) {
                ink &= above->mapRectToScene(QRectF{0, 0, above->width(), above->height()});
            }
        }
        if (isText(item) && !ink.isEmpty()) {
            texts.push_back({item->property("text").toString(), ink});
        }
    }
    return texts;
}

TEST(PanelQmlTest, EverySceneKeepsItsTextsInsideTheShapeAndClearOfTheCamera) {
    for (const std::optional<Size> notch : {std::optional<Size>{}, std::optional{Size{184, 32}}}) {
        for (const std::string_view scene : DemoScenes::names()) {
            SCOPED_TRACE(std::string{scene} + (notch ? " with a camera" : ""));
            PanelQml qml{notch};
            qml.arrange(scene);
            const double axis = qml.view.width() / 2.0;
            const NotchOutline outline{qml.panel.stage.shape()};
            const NotchModel::Fields& fields = qml.panel.model.fields();
            const auto& [width, height] = fields.notchSize;
            const QRectF camera{axis - width / 2, 0, width, height};
            const QRectF bubble = qml.panel.stage.bubble();
            for (const auto& [text, ink] : shownTexts(qml.view)) {
                for (const QPointF corner : {ink.topLeft(), ink.topRight(), ink.bottomLeft(), ink.bottomRight()}) {
                    EXPECT_TRUE(outline.contains({corner.x() - axis, corner.y()}) || bubble.contains(corner))
                        << qPrintable(text) << " at " << corner.x() << ", " << corner.y();
                }
                EXPECT_FALSE(fields.hasNotch && ink.intersects(camera)) << qPrintable(text);
            }
        }
    }
}

bool shows(QQuickView& view, const QString& text) {
    return std::ranges::any_of(shownTexts(view), [&](const ShownText& shown) { return shown.text == text; });
}

TEST(PanelQmlTest, ShowsTheListAsItChanges) {
    PanelQml qml;
    qml.arrange("empty");
    EXPECT_TRUE(shows(qml.view, "No agents running"));
    AgentSession session = sampleSession("a", AgentStatus::working(), qml.scheduler.now());
    qml.application.showSessions(std::vector{session});
    QTest::qWait(50);
    EXPECT_FALSE(shows(qml.view, "No agents running"));
    EXPECT_TRUE(shows(qml.view, "Claude Code") && shows(qml.view, "1"));
    session.status = AgentStatus::needsYou("Has a question for you");
    qml.application.showSessions(std::vector{session});
    QTest::qWait(50);
    EXPECT_TRUE(shows(qml.view, "Has a question for you"));
    EXPECT_EQ(qml.panel.agents.spoken(), "Agents, 1 needs you");
}

TEST(PanelQmlTest, ARowMadeWhileThePanelWasClosedIsWhole) {
    PanelQml qml;
    qml.application.showSessions(std::vector{sampleSession("a", AgentStatus::working())});
    QTest::qWait(50);
    qml.defaults.set("reducedMotion", true);
    qml.application.notch().expand(NotchTab::agents, true);
    QTest::qWait(50);
    EXPECT_TRUE(shows(qml.view, "atlas"));
}

TEST(PanelQmlTest, ATapOpensTheClosedNotch) {
    PanelQml qml;
    qml.arrange("live");
    QTest::mouseClick(&qml.view, Qt::LeftButton, {}, QPoint{qml.view.width() / 2, 0});
    EXPECT_EQ(qml.mode(), NotchModel::Mode::expanded);
}

TEST(PanelQmlTest, RowsTellAScreenReaderWhatTheyAre) {
    PanelQml qml;
    qml.arrange("open");
    int rows = 0;
    for (const QQuickItem* item : qml.items()) {
        if (QByteArrayView{item->metaObject()->className()}.startsWith("SessionDelegate")) {
            ++rows;
            const QString spoken = item->property("spoken").toString();
            EXPECT_TRUE(spoken.contains(u", ")) << qPrintable(spoken);
        }
    }
    EXPECT_GE(rows, 4);
}

// The promise that matters most to a laptop: a panel at which nothing happens draws nothing.
TEST(PanelQmlTest, DrawsNothingWhileNothingMoves) {
    for (const std::string_view scene :
         {"closed", "live", "peek-needs-you", "open", "open-expanded", "usage", "leftovers-failed"}) {
        PanelQml qml;
        ASSERT_TRUE(DemoScenes::arrange(scene, qml.application, qml.scheduler.now()));
        ASSERT_TRUE(QTest::qWaitFor([&] { return !qml.panel.stage.isMoving(); }));
        QTest::qWait(400); // the rows have faded in
        if (MascotItem* const kippo = shownMascot(qml.view)) {
            kippo->restart(1); // and does not blink for five seconds
            kippo->advance(0.2);
            EXPECT_FALSE(kippo->isMoving()) << scene;
        }
        const QSignalSpy frames{&qml.view, &QQuickWindow::frameSwapped};
        QTest::qWait(2000);
        EXPECT_EQ(frames.count(), 0) << scene;
    }
}

TEST(PanelQmlTest, TheOpeningIsDrawnFrameByFrame) {
    PanelQml qml;
    ASSERT_TRUE(QTest::qWaitForWindowExposed(&qml.view));
    const QSignalSpy frames{&qml.view, &QQuickWindow::frameSwapped};
    qml.panel.notch.open();
    EXPECT_TRUE(qml.panel.stage.isMoving());
    ASSERT_TRUE(QTest::qWaitFor([&] { return !qml.panel.stage.isMoving(); }));
    EXPECT_GT(frames.count(), 5);
}

TEST(ThemeTest, TextAndLightsStandOutFromTheirGround) {
    QQmlEngine engine;
    QQmlComponent component{&engine};
    component.setData("import QtQml\nimport Kippo\nQtObject { readonly property var theme: Theme }",
                      QUrl{"qrc:/qt/qml/Kippo/Probe.qml"});
    const std::unique_ptr<QObject> probe{component.create()};
    ASSERT_TRUE(probe) << qPrintable(component.errorString());
    auto* theme = probe->property("theme").value<QObject*>();
    const auto contrast = [theme](const char* text, const char* ground) {
        return Palette::contrast(theme->property(text).value<QColor>(), theme->property(ground).value<QColor>());
    };
    EXPECT_NEAR(Palette::contrast({0x77, 0x77, 0x77}, Qt::white), 4.478, 0.001);
    for (const Palette::Choice& style : Palette::styles()) {
        SCOPED_TRACE(style.value);
        theme->setProperty("surface", Palette::surface(style.value));
        for (const char* text : {"text", "textSecondary", "textTertiary", "needsYou", "working", "done", "idle"}) {
            EXPECT_GE(contrast(text, "surface"), 4.5) << text;
            EXPECT_GE(contrast(text, "hover"), 4.5) << text;
        }
        for (const char* ground : {"chip", "control", "controlHover"}) {
            EXPECT_GE(contrast("textSecondary", ground), 4.5) << ground;
        }
    }
}

} // namespace
} // namespace kippo
