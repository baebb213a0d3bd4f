#pragma once

#include "Notch/Screens.h"
#include "Support/DesktopLook.h"
#include "Support/UserDefaults.h"

#include <QObject>
#include <QQmlEngine>

namespace kippo {

/// A display that the person can choose, for QML.
struct DisplayChoice {
    Q_GADGET
    QML_ANONYMOUS
    Q_PROPERTY(QString value MEMBER value CONSTANT)
    Q_PROPERTY(QString label MEMBER label CONSTANT)
    Q_PROPERTY(bool isConnected MEMBER isConnected CONSTANT)

public:
    QString value; ///< what the setting "display" holds for it
    QString label;
    bool isConnected = true;

    bool operator==(const DisplayChoice&) const = default;
};

/// The settings of the application as a whole. Each write is stored at once; a change from elsewhere shows at once.
class PreferencesViewModel : public QObject {
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("Made by the application")
    Q_PROPERTY(bool isDark READ isDark NOTIFY lookChanged)
    /// Each is a DisplayChoice.
    Q_PROPERTY(QVariantList displays READ displays NOTIFY displaysChanged)
    Q_PROPERTY(QString display READ display WRITE setDisplay NOTIFY changed)
    Q_PROPERTY(bool openOnHover READ openOnHover WRITE setOpenOnHover NOTIFY changed)
    Q_PROPERTY(bool reducedMotion READ reducedMotion WRITE setReducedMotion NOTIFY changed)
    Q_PROPERTY(bool showLiveActivity READ showLiveActivity WRITE setShowLiveActivity NOTIFY changed)
    Q_PROPERTY(bool agentAlerts READ agentAlerts WRITE setAgentAlerts NOTIFY changed)

public:
    PreferencesViewModel(UserDefaults& defaults, Screens& screens, DesktopLook& look, QObject* parent = nullptr);

    bool isDark() const { return look_.isDark(); }
    QVariantList displays() const;
    QString display() const;
    void setDisplay(const QString& value) { defaults_.set("display", value.toStdString()); }
    bool openOnHover() const { return defaults_.get<bool>("openOnHover"); }
    void setOpenOnHover(bool on) { defaults_.set("openOnHover", on); }
    bool reducedMotion() const { return defaults_.get<bool>("reducedMotion"); }
    void setReducedMotion(bool on) { defaults_.set("reducedMotion", on); }
    bool showLiveActivity() const { return defaults_.get<bool>("showLiveActivity"); }
    void setShowLiveActivity(bool on) { defaults_.set("showLiveActivity", on); }
    bool agentAlerts() const { return defaults_.get<bool>("agentAlerts"); }
    void setAgentAlerts(bool on) { defaults_.set("agentAlerts", on); }

signals:
    void changed();
    void displaysChanged();
    void lookChanged();

private:
    void listDisplays();

    UserDefaults& defaults_;
    Screens& screens_;
    DesktopLook& look_;
    QList<DisplayChoice> displays_;
    Subscription defaultsSubscription_;
    Subscription screensSubscription_;
    Subscription lookSubscription_;
};

} // namespace kippo
