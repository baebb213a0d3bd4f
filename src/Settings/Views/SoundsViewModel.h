#pragma once

#include "Support/Sounds.h"

#include <QObject>
#include <QQmlEngine>

namespace kippo {

/// One occasion for a sound, for QML.
struct SoundLine {
    Q_GADGET
    QML_ANONYMOUS
    Q_PROPERTY(QString title MEMBER title CONSTANT)
    Q_PROPERTY(QString name MEMBER name CONSTANT)
    Q_PROPERTY(int sound MEMBER sound CONSTANT)

public:
    QString title; ///< when it is played
    QString name;
    int sound = 0; ///< for `SoundsViewModel::play`
};

/// The sounds, to be tried out.
class SoundsViewModel : public QObject {
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("Made by the application")
    /// Each is a SoundLine.
    Q_PROPERTY(QVariantList agentSounds READ agentSounds CONSTANT)
    Q_PROPERTY(QVariantList focusSounds READ focusSounds CONSTANT)

public:
    explicit SoundsViewModel(Sounds& sounds, QObject* parent = nullptr) : QObject(parent), sounds_(sounds) {}

    QVariantList agentSounds() const;
    QVariantList focusSounds() const;
    Q_INVOKABLE void play(int sound);

private:
    Sounds& sounds_;
};

} // namespace kippo
