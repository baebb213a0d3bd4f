#include "Notch/Views/NotchViewModel.h"

#include "Theme/Texts.h"

#include <algorithm>

namespace kippo {

namespace {

constexpr std::size_t lightsInWing = 3;

QVariantList lightsOf(const AgentsActivity& activity) {
    QVariantList lights;
    for (std::size_t i = 0; i < std::min(activity.lights.size(), lightsInWing); ++i) {
        const StatusLight& light = activity.lights[i];
        lights.append(
            QVariant::fromValue(NotchLight{AgentLook::look(light.status), QColor::fromRgb(tint(light.kind))}));
    }
    return lights;
}

} // namespace

NotchViewModel::NotchViewModel(NotchModel& model, QObject* parent) : QObject(parent), model_(model) {
    subscription_ = model_.observe([this] { read(); });
    read();
}

void NotchViewModel::open() const {
    if (onOpen) {
        onOpen();
    }
}

void NotchViewModel::openSettings() const {
    if (onOpenSettings) {
        onOpenSettings();
    }
}

QString NotchViewModel::peekTitle() const { return oneLine(peek_.title()); }

QString NotchViewModel::peekWord() const {
    return peek_.status.isNeedsYou() ? QStringLiteral("Needs you") : QStringLiteral("Done");
}

QString NotchViewModel::peekProject() const { return oneLine(peek_.project()); }
QString NotchViewModel::peekSentence() const { return oneLine(peek_.sentence(false)); }

QString NotchViewModel::peekSpoken() const {
    return QStringList{peekTitle(), peekWord(), peekProject(), peekSentence()}.join(QStringLiteral(", "));
}

QString NotchViewModel::liveSpoken() const {
    if (isAsleep_) {
        return QStringLiteral("Asleep");
    }
    return QStringLiteral("%1 working, waiting for you: %2").arg(live_.working).arg(live_.needsYou);
}

void NotchViewModel::setReducedMotion(bool reduced) {
    if (reducedMotion_ != reduced) {
        reducedMotion_ = reduced;
        emit changed();
    }
}

void NotchViewModel::read() {
    const NotchModel::Fields& fields = model_.fields();
    if (fields.peek) {
        peek_ = std::get<AgentSession>(*fields.peek);
    }
    isAsleep_ = fields.live ? std::holds_alternative<SleepingActivity>(*fields.live) : isAsleep_;
    const auto* agents = fields.live ? std::get_if<AgentsActivity>(&*fields.live) : nullptr;
    if (agents && *agents != live_) {
        live_ = *agents;
        lights_ = lightsOf(live_);
        emit lightsChanged();
    }
    emit changed();
}

} // namespace kippo
