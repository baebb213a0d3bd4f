#include "Settings/Views/SoundsViewModel.h"

#include "Theme/Texts.h"

namespace kippo {

namespace {

QVariant line(const QString& title, Sound sound) {
    return QVariant::fromValue(SoundLine{title, oneLine(name(sound)), static_cast<int>(sound)});
}

} // namespace

QVariantList SoundsViewModel::agentSounds() const {
    return {line(QStringLiteral("An agent needs you"), Sound::funk),
            line(QStringLiteral("An agent is done"), Sound::glass)};
}

QVariantList SoundsViewModel::focusSounds() const {
    return {line(QStringLiteral("A focus is over"), Sound::hero), line(QStringLiteral("A break is over"), Sound::blow)};
}

void SoundsViewModel::play(int sound) {
    if (sound >= 0 && sound <= static_cast<int>(Sound::tink)) {
        sounds_.play(static_cast<Sound>(sound));
    }
}

} // namespace kippo
