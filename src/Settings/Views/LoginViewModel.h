#pragma once

#include "Support/LoginItem.h"

#include <QObject>
#include <QQmlEngine>

namespace kippo {

/// Whether the desktop starts Kippo when the person logs in. Shows what is: the desktop's own settings change it, too.
class LoginViewModel : public QObject {
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("Made by the application")
    Q_PROPERTY(bool startsAtLogin READ startsAtLogin NOTIFY changed)
    /// Why the last change did not come about; empty when it did.
    Q_PROPERTY(QString problem READ problem NOTIFY changed)

public:
    explicit LoginViewModel(LoginItem& item, QObject* parent = nullptr);

    bool startsAtLogin() const { return isOn_; }
    const QString& problem() const { return problem_; }

    Q_INVOKABLE void setStartsAtLogin(bool on);
    /// Asks the desktop again.
    Q_INVOKABLE void refresh();

signals:
    void changed();

private:
    LoginItem& item_;
    bool isOn_;
    QString problem_;
};

} // namespace kippo
