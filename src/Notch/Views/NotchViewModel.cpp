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

using Tab = NotchViewModel::Tab;
static_assert(static_cast<Tab>(NotchTab::agents) == Tab::Agents && static_cast<Tab>(NotchTab::focus) == Tab::Focus &&
              static_cast<Tab>(NotchTab::revenue) == Tab::Revenue);

NotchPage pageOf(NotchTab tab) {
    const bool isFocus = tab == NotchTab::focus;
    return {static_cast<int>(tab), isFocus ? QStringLiteral("Focus") : QStringLiteral("Agents"),
            isFocus ? Icon::Focus : Icon::Agents};
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

void NotchViewModel::show(int tab) const {
    if (onShow) {
        onShow(static_cast<NotchTab>(tab));
    }
}

void NotchViewModel::turn(int steps) const {
    if (onTurn) {
        onTurn(steps);
    }
}

void NotchViewModel::pin(bool pinned) const {
    if (onPin) {
        onPin(pinned);
    }
}

void NotchViewModel::close() const {
    if (onClose) {
        onClose();
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
    switch (wing_) {
    case Wing::Asleep:
        return QStringLiteral("Asleep");
    case Wing::InFocus:
        return QStringLiteral("Focus timer");
    case Wing::AtWork:
        break;
    }
    const QString agents = QStringLiteral("%1 working, waiting for you: %2").arg(live_.working).arg(live_.needsYou);
    return hasFocusBeside_ ? agents + QStringLiteral(", focus timer") : agents;
}

void NotchViewModel::read() {
    const NotchModel::Fields& fields = model_.fields();
    if (fields.peek) {
        peek_ = std::get<AgentSession>(*fields.peek);
    }
    if (fields.live) {
        readWings(fields);
    }
    if (fields.pages != tabs_) {
        readPages(fields.pages);
    }
    emit changed();
}

void NotchViewModel::readWings(const NotchModel::Fields& fields) {
    const auto* agents = std::get_if<AgentsActivity>(&*fields.live);
    const bool isFocus = std::holds_alternative<FocusActivity>(*fields.live);
    wing_ = agents ? Wing::AtWork : isFocus ? Wing::InFocus : Wing::Asleep;
    hasFocusBeside_ = fields.secondaryLive && std::holds_alternative<FocusActivity>(*fields.secondaryLive);
    if (agents && *agents != live_) {
        live_ = *agents;
        lights_ = lightsOf(live_);
        emit lightsChanged();
    }
}

void NotchViewModel::readPages(const std::vector<NotchTab>& tabs) {
    tabs_ = tabs;
    pages_.clear();
    for (const NotchTab tab : tabs) {
        pages_.append(QVariant::fromValue(pageOf(tab)));
    }
    emit pagesChanged();
}

} // namespace kippo
