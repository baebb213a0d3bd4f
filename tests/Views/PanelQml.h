#pragma once

#include "App/DemoScenes.h"
#include "Mascot/Views/MascotItem.h"
#include "PanelFixture.h"

#include <QQmlEngine>
#include <QQuickItem>
#include <QQuickView>
#include <QTest>
#include <gtest/gtest.h>

namespace kippo {

/// The panel in a window, offscreen.
struct PanelQml : PanelFixture {
    explicit PanelQml(std::optional<Size> notch = {}) : PanelFixture(notch) {
        QObject::connect(view.engine(), &QQmlEngine::warnings, &view, [this](const QList<QQmlError>& errors) {
            for (const QQmlError& error : errors) {
                warnings.append(error.toString());
            }
        });
        view.setColor(Qt::transparent);
        view.setResizeMode(QQuickView::SizeRootObjectToView);
        view.setGeometry(0, 0, static_cast<int>(window.frame.width), static_cast<int>(window.frame.height));
        panel.load(view);
        view.show();
    }

    /// Shows the scene as it is when all motion has ended.
    void arrange(std::string_view scene) {
        defaults.set("reducedMotion", true);
        ASSERT_TRUE(DemoScenes::arrange(scene, application, scheduler.now())) << scene;
        QTest::qWait(50);
    }

    QStringList warnings;
    QQuickView view;
};

/// Every item that can be seen.
template <typename Visit> void visitShown(QQuickItem* item, const Visit& visit) {
    if (!item->isVisible() || item->opacity() == 0) {
        return;
    }
    visit(*item);
    for (QQuickItem* child : item->childItems()) {
        visitShown(child, visit);
    }
}

/// The mascot where he can be seen.
inline MascotItem* shownMascot(QQuickView& view) {
    MascotItem* found = nullptr;
    visitShown(view.rootObject(), [&](QQuickItem& item) {
        if (auto* const mascot = qobject_cast<MascotItem*>(&item)) {
            found = mascot;
        }
    });
    return found;
}

} // namespace kippo
