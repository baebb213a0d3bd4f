#include "App/Panel.h"

#include <QQuickView>

namespace kippo {

Panel::Panel(Stores& /*stores*/, Scheduler& scheduler, UserDefaults& /*defaults*/)
    : agents(scheduler), leftBehind(scheduler) {}

void Panel::load(QQuickView& view) {
    view.setInitialProperties({{QStringLiteral("stage"), QVariant::fromValue(&stage)},
                               {QStringLiteral("notch"), QVariant::fromValue(&notch)},
                               {QStringLiteral("agents"), QVariant::fromValue(&agents)},
                               {QStringLiteral("leftBehind"), QVariant::fromValue(&leftBehind)},
                               {QStringLiteral("usage"), QVariant::fromValue(&usage)}});
    view.setSource(QUrl{QStringLiteral("qrc:/qt/qml/Kippo/NotchPanel.qml")});
}

} // namespace kippo
