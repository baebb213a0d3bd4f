#pragma once

#include "Support/DesktopLook.h"
#include "Support/UserDefaults.h"

#include <QColor>
#include <QObject>
#include <QQmlEngine>

namespace kippo {

/// How Kippo looks, as colours: the settings "style" and "accent" and the desktop's own look. A change shows at once.
class Appearance : public QObject {
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("Made by the application")
    /// Of the windows; the panel is always dark.
    Q_PROPERTY(bool isDark READ isDark NOTIFY changed)
    Q_PROPERTY(bool reducedMotion READ reducedMotion NOTIFY changed)
    /// The panel's ground.
    Q_PROPERTY(QColor surface READ surface NOTIFY changed)
    /// Text and outlines in the accent on the panel.
    Q_PROPERTY(QColor panelAccent READ panelAccent NOTIFY changed)
    /// The windows' prominent controls, and the text on them.
    Q_PROPERTY(QColor accent READ accent NOTIFY changed)
    Q_PROPERTY(QColor accentInk READ accentInk NOTIFY changed)
    /// Text and outlines in the accent in the windows.
    Q_PROPERTY(QColor accentText READ accentText NOTIFY changed)
    /// What the accent "system" stands for.
    Q_PROPERTY(QColor desktopAccent READ desktopAccent NOTIFY changed)

public:
    Appearance(UserDefaults& defaults, DesktopLook& look, QObject* parent = nullptr);

    bool isDark() const { return look_.isDark(); }
    /// Kippo's own setting asks for less motion, or the desktop's does.
    bool reducedMotion() const { return defaults_.get<bool>("reducedMotion") || look_.reducesMotion(); }
    QColor surface() const;
    QColor panelAccent() const;
    QColor accent() const;
    QColor accentInk() const;
    QColor accentText() const;
    QColor desktopAccent() const;

signals:
    void changed();

private:
    QColor chosenAccent() const;

    UserDefaults& defaults_;
    DesktopLook& look_;
    Subscription defaultsSubscription_;
    Subscription lookSubscription_;
};

} // namespace kippo
