#pragma once

#include "Notch/Screens.h"
#include "Support/UserDefaults.h"

#include <QColor>
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

/// A colour that the person can choose, for QML.
struct ColourChoice {
    Q_GADGET
    QML_ANONYMOUS
    Q_PROPERTY(QString value MEMBER value CONSTANT)
    Q_PROPERTY(QString label MEMBER label CONSTANT)
    Q_PROPERTY(QColor colour MEMBER colour CONSTANT)

public:
    QString value; ///< what the setting holds for it
    QString label;
    QColor colour;
};

/// The settings of the application as a whole. Each write is stored at once; a change from elsewhere shows at once.
class PreferencesViewModel : public QObject {
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("Made by the application")
    /// Each is a DisplayChoice.
    Q_PROPERTY(QVariantList displays READ displays NOTIFY displaysChanged)
    Q_PROPERTY(QString display READ display WRITE setDisplay NOTIFY changed)
    Q_PROPERTY(bool showMenuBarIcon READ showMenuBarIcon WRITE setShowMenuBarIcon NOTIFY changed)
    Q_PROPERTY(bool hotKeysEnabled READ hotKeysEnabled WRITE setHotKeysEnabled NOTIFY changed)
    Q_PROPERTY(bool openOnHover READ openOnHover WRITE setOpenOnHover NOTIFY changed)
    Q_PROPERTY(bool showFocusTab READ showFocusTab WRITE setShowFocusTab NOTIFY changed)
    Q_PROPERTY(bool showLiveActivity READ showLiveActivity WRITE setShowLiveActivity NOTIFY changed)
    Q_PROPERTY(bool statusLights READ statusLights WRITE setStatusLights NOTIFY changed)
    /// Each is a ColourChoice.
    Q_PROPERTY(QVariantList styles READ styles CONSTANT)
    Q_PROPERTY(QString style READ style WRITE setStyle NOTIFY changed)
    /// Each is a ColourChoice; the desktop's own, "system", is none of them.
    Q_PROPERTY(QVariantList accents READ accents CONSTANT)
    Q_PROPERTY(QString accent READ accent WRITE setAccent NOTIFY changed)
    /// The screen has a camera notch, whose size is this.
    Q_PROPERTY(bool hasCutout READ hasCutout WRITE setHasCutout NOTIFY changed)
    Q_PROPERTY(int cutoutWidth READ cutoutWidth WRITE setCutoutWidth NOTIFY changed)
    Q_PROPERTY(int cutoutHeight READ cutoutHeight WRITE setCutoutHeight NOTIFY changed)
    Q_PROPERTY(bool reducedMotion READ reducedMotion WRITE setReducedMotion NOTIFY changed)
    /// The notch makes room for a full-screen window.
    Q_PROPERTY(bool stepsAside READ stepsAside WRITE setStepsAside NOTIFY changed)
    Q_PROPERTY(bool agentAlerts READ agentAlerts WRITE setAgentAlerts NOTIFY changed)
    Q_PROPERTY(bool agentSound READ agentSound WRITE setAgentSound NOTIFY changed)

public:
    PreferencesViewModel(UserDefaults& defaults, Screens& screens, QObject* parent = nullptr);

    QVariantList displays() const;
    QString display() const;
    void setDisplay(const QString& value) { write("display", value); }
    bool showMenuBarIcon() const { return isOn("showMenuBarIcon"); }
    void setShowMenuBarIcon(bool on) { defaults_.set("showMenuBarIcon", on); }
    bool hotKeysEnabled() const { return isOn("hotKeysEnabled"); }
    void setHotKeysEnabled(bool on) { defaults_.set("hotKeysEnabled", on); }
    bool openOnHover() const { return isOn("openOnHover"); }
    void setOpenOnHover(bool on) { defaults_.set("openOnHover", on); }
    bool showFocusTab() const { return isOn("showFocusTab"); }
    void setShowFocusTab(bool on) { defaults_.set("showFocusTab", on); }
    bool showLiveActivity() const { return isOn("showLiveActivity"); }
    void setShowLiveActivity(bool on) { defaults_.set("showLiveActivity", on); }
    bool statusLights() const { return isOn("statusLights"); }
    void setStatusLights(bool on) { defaults_.set("statusLights", on); }
    static QVariantList styles();
    QString style() const;
    void setStyle(const QString& value) { write("style", value); }
    static QVariantList accents();
    QString accent() const;
    void setAccent(const QString& value) { write("accent", value); }
    bool hasCutout() const { return defaults_.get<double>("cutoutWidth") > 0; }
    /// A screen that has one gets the usual size to begin with.
    void setHasCutout(bool has);
    int cutoutWidth() const { return whole("cutoutWidth"); }
    void setCutoutWidth(int width) { defaults_.set("cutoutWidth", std::int64_t{width}); }
    int cutoutHeight() const { return whole("cutoutHeight"); }
    void setCutoutHeight(int height) { defaults_.set("cutoutHeight", std::int64_t{height}); }
    bool reducedMotion() const { return isOn("reducedMotion"); }
    void setReducedMotion(bool on) { defaults_.set("reducedMotion", on); }
    bool stepsAside() const { return defaults_.get<std::string>("fullScreen") == "stepAside"; }
    void setStepsAside(bool on) { defaults_.set("fullScreen", on ? "stepAside" : "stay"); }
    bool agentAlerts() const { return isOn("agentAlerts"); }
    void setAgentAlerts(bool on) { defaults_.set("agentAlerts", on); }
    bool agentSound() const { return isOn("agentSound"); }
    void setAgentSound(bool on) { defaults_.set("agentSound", on); }

signals:
    void changed();
    void displaysChanged();

private:
    bool isOn(std::string_view key) const { return defaults_.get<bool>(key); }
    int whole(std::string_view key) const;
    void write(std::string_view key, const QString& value) { defaults_.set(key, value.toStdString()); }
    void listDisplays();

    UserDefaults& defaults_;
    Screens& screens_;
    QList<DisplayChoice> displays_;
    Subscription defaultsSubscription_;
    Subscription screensSubscription_;
};

} // namespace kippo
