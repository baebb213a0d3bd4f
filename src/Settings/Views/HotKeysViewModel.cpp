#include "Settings/Views/HotKeysViewModel.h"

#include "Theme/Texts.h"

#include <algorithm>

namespace kippo {

namespace {

QString troubleOf(HotKeyRecord::State state) {
    switch (state) {
    case HotKeyRecord::State::takenByAnother:
        return QStringLiteral("Held by another program");
    case HotKeyRecord::State::unsupported:
        return QStringLiteral("Not on this desktop");
    default:
        return {};
    }
}

} // namespace

HotKeysViewModel::HotKeysViewModel(const HotKeyState& state, QObject* parent)
    : QObject(parent), state_(state), subscription_(state.observe([this] { emit changed(); })) {}

QVariantList HotKeysViewModel::lines() const {
    QVariantList all;
    for (const HotKeyRecord& record : state_.records()) {
        all.append(QVariant::fromValue(
            HotKeyLine{{QStringLiteral("Ctrl"), QStringLiteral("Alt"), QString{QLatin1Char{record.keys.letter}}},
                       oneLine(record.title),
                       troubleOf(record.state)}));
    }
    return all;
}

bool HotKeysViewModel::isUnsupported() const {
    return std::ranges::any_of(
        state_.records(), [](const HotKeyRecord& record) { return record.state == HotKeyRecord::State::unsupported; });
}

} // namespace kippo
