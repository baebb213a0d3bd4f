#pragma once

#include "App/AppIcon.h"

#include <QQuickView>
#include <functional>

namespace kippo {

/// An ordinary window of the desktop that says when it has been closed.
class OrdinaryView final : public QQuickView {
public:
    std::function<void()> onClosed;

    /// Loads `file` of the QML module with `properties`, and gives the window its icon and its size.
    void load(const QString& file, const QVariantMap& properties, QSize usual, QSize smallest) {
        setIcon(AppIcon::icon());
        setResizeMode(QQuickView::SizeRootObjectToView);
        setMinimumSize(smallest);
        resize(usual);
        setInitialProperties(properties);
        setSource(QUrl{QStringLiteral("qrc:/qt/qml/Kippo/") + file});
    }
    /// Shows it, or brings it to the front.
    void present() {
        if (isVisible()) {
            raise();
        }
        show();
        requestActivate();
    }

protected:
    bool event(QEvent* event) override {
        const bool isClosed = event->type() == QEvent::Close;
        const bool isHandled = QQuickView::event(event);
        if (isClosed && onClosed) {
            onClosed();
        }
        return isHandled;
    }
};

} // namespace kippo
