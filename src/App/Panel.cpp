#include "App/Panel.h"

#include <QQuickView>

namespace kippo {

Panel::Panel(Stores& stores, Scheduler& scheduler, UserDefaults& defaults, DesktopLook& look)
    : agents(scheduler), leftBehind(scheduler), focus(stores.focus, scheduler, defaults),
      stretch(stores.stretch, scheduler), mascotStage(stores.mascotStage, scheduler), appearance(defaults, look) {
    const auto readMotion = [this] { stage.setReducedMotion(appearance.reducedMotion()); };
    QObject::connect(&appearance, &Appearance::changed, &stage, readMotion);
    readMotion();
}

void Panel::load(QQuickView& view) {
    view.setInitialProperties({{QStringLiteral("stage"), QVariant::fromValue(&stage)},
                               {QStringLiteral("notch"), QVariant::fromValue(&notch)},
                               {QStringLiteral("agents"), QVariant::fromValue(&agents)},
                               {QStringLiteral("leftBehind"), QVariant::fromValue(&leftBehind)},
                               {QStringLiteral("usage"), QVariant::fromValue(&usage)},
                               {QStringLiteral("focusTimer"), QVariant::fromValue(&focus)},
                               {QStringLiteral("stretch"), QVariant::fromValue(&stretch)},
                               {QStringLiteral("mascot"), QVariant::fromValue(&mascot)},
                               {QStringLiteral("mascotStage"), QVariant::fromValue(&mascotStage)},
                               {QStringLiteral("appearance"), QVariant::fromValue(&appearance)}});
    view.setSource(QUrl{QStringLiteral("qrc:/qt/qml/Kippo/NotchPanel.qml")});
}

} // namespace kippo
