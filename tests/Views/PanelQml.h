#pragma once

#include "App/DemoScenes.h"
#include "Mascot/Views/MascotItem.h"
#include "PanelFixture.h"
#include "WindowProbe.h"

namespace kippo {

/// The panel in a window, offscreen.
struct PanelQml : WarningsFail, PanelFixture {
    explicit PanelQml(std::optional<Size> notch = {}) : PanelFixture(notch) {
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
    std::vector<QQuickItem*> items() const { return shownItems(view.rootObject()); }

    QQuickView view;
};

/// The mascot where he can be seen.
inline MascotItem* shownMascot(QQuickView& view) {
    MascotItem* found = nullptr;
    for (QQuickItem* item : shownItems(view.rootObject())) {
        auto* const mascot = qobject_cast<MascotItem*>(item);
        found = mascot ? mascot : found;
    }
    return found;
}

} // namespace kippo
