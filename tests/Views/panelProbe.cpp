// The panel with nothing in it but its shape, for the tests that look at it from outside, through the X server.

#include "Fakes/FakeDefaults.h"
#include "Notch/NotchController.h"
#include "Notch/Views/NotchSilhouette.h"
#include "Platform/Qt/NotchWindow.h"
#include "Platform/Qt/QtScheduler.h"
#include "Platform/Qt/QtScreens.h"

#include <QGuiApplication>
#include <QTimer>

int main(int argc, char** argv) {
    using namespace kippo;
    qputenv("QT_QUICK_BACKEND", "software");
    const QGuiApplication application(argc, argv);
    FakeDefaults defaults;
    defaults.set("openOnHover", true);
    defaults.set("display", "builtIn");

    QtScheduler scheduler;
    QtScreens screens;
    NotchWindow window;
    NotchStage stage;
    NotchSilhouette silhouette;
    silhouette.setStage(&stage);
    silhouette.setParentItem(window.view().contentItem());
    const auto fill = [&] { silhouette.setSize(window.view().size()); };
    QObject::connect(&window.view(), &QWindow::widthChanged, fill);
    QObject::connect(&window.view(), &QWindow::heightChanged, fill);
    QObject::connect(&stage, &NotchStage::shapeChanged, [&] { window.setShape(stage.shape()); });
    QTimer frames;
    QObject::connect(&frames, &QTimer::timeout, [&] { stage.advance(0.016); });
    QObject::connect(&stage, &NotchStage::movingChanged, [&] { stage.isMoving() ? frames.start(16) : frames.stop(); });
    window.onShow = [&](const NotchShapes& shapes, NotchModel::Mode mode) { stage.show(shapes, mode); };
    NotchModel model;
    const NotchController controller{model, scheduler, defaults, screens, window, window};
    return QGuiApplication::exec();
}
