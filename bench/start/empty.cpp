// An empty Qt Quick window at the place of the notch, drawn as Kippo draws: the yardstick of how soon a window can be
// there.

#include <QGuiApplication>
#include <QQuickView>

int main(int argc, char** argv) {
    QQuickWindow::setGraphicsApi(QSGRendererInterface::Software);
    QGuiApplication application{argc, argv};
    QQuickView view;
    view.setFlags(Qt::Tool | Qt::X11BypassWindowManagerHint | Qt::FramelessWindowHint | Qt::WindowDoesNotAcceptFocus);
    view.setResizeMode(QQuickView::SizeRootObjectToView);
    view.setGeometry(700, 0, 200, 32);
    view.setSource(QUrl{QStringLiteral("qrc:/qt/qml/EmptyWindow/Empty.qml")});
    view.show();
    return QGuiApplication::exec();
}
