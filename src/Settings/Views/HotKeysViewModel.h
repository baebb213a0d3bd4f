#pragma once

#include "Settings/HotKeyState.h"

#include <QObject>
#include <QQmlEngine>

namespace kippo {

/// One hot key, for QML.
struct HotKeyLine {
    Q_GADGET
    QML_ANONYMOUS
    /// As on the keyboard: "Ctrl", "Alt", "A".
    Q_PROPERTY(QStringList keys MEMBER keys CONSTANT)
    Q_PROPERTY(QString title MEMBER title CONSTANT)
    /// Why the key does nothing; empty when it works.
    Q_PROPERTY(QString trouble MEMBER trouble CONSTANT)

public:
    QStringList keys;
    QString title;
    QString trouble;
};

/// The hot keys, and what came of them.
class HotKeysViewModel : public QObject {
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("Made by the application")
    /// Each is a HotKeyLine.
    Q_PROPERTY(QVariantList lines READ lines NOTIFY changed)
    /// This desktop lets no program take keys.
    Q_PROPERTY(bool isUnsupported READ isUnsupported NOTIFY changed)

public:
    explicit HotKeysViewModel(const HotKeyState& state, QObject* parent = nullptr);

    QVariantList lines() const;
    bool isUnsupported() const;

signals:
    void changed();

private:
    const HotKeyState& state_;
    Subscription subscription_;
};

} // namespace kippo
