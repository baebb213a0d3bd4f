#include "App/SettingsWindow.h"

#include "App/OrdinaryView.h"
#include "Theme/Appearance.h"

#include <QQuickItem>
#include <utility>

namespace kippo {

namespace {

constexpr QSize usualSize{880, 660};
constexpr QSize smallestSize{720, 460};

} // namespace

/// Everything that lives only while the window is open.
struct SettingsWindow::Opened final : QObject {
    explicit Opened(const Ports& ports)
        : appearance(ports.defaults, ports.look), preferences(ports.defaults, ports.screens), login(ports.loginItem),
          hotKeys(ports.hotKeys), sounds(ports.sounds), focus(ports.defaults, ports.scheduler),
          about(ports.version, ports.report, ports.desktop), agents(ports.agents, ports.scheduler) {}

    QVariantMap properties() {
        return {{QStringLiteral("appearance"), QVariant::fromValue(&appearance)},
                {QStringLiteral("preferences"), QVariant::fromValue(&preferences)},
                {QStringLiteral("login"), QVariant::fromValue(&login)},
                {QStringLiteral("hotKeys"), QVariant::fromValue(&hotKeys)},
                {QStringLiteral("sounds"), QVariant::fromValue(&sounds)},
                {QStringLiteral("focusSettings"), QVariant::fromValue(&focus)},
                {QStringLiteral("about"), QVariant::fromValue(&about)},
                {QStringLiteral("agents"), QVariant::fromValue(&agents)}};
    }

    Appearance appearance;
    PreferencesViewModel preferences;
    LoginViewModel login;
    HotKeysViewModel hotKeys;
    SoundsViewModel sounds;
    FocusSettingsViewModel focus;
    AboutViewModel about;
    AgentSettingsViewModel agents;
    OrdinaryView view;
};

SettingsWindow::SettingsWindow(Ports ports) : ports_(std::move(ports)) {}
SettingsWindow::~SettingsWindow() = default;

QQuickView* SettingsWindow::view() { return opened_ ? &opened_->view : nullptr; }

void SettingsWindow::open() {
    opened_ = std::make_unique<Opened>(ports_);
    OrdinaryView& view = opened_->view;
    view.setTitle(QStringLiteral("Kippo Settings"));
    view.load(QStringLiteral("SettingsWindow.qml"), opened_->properties(), usualSize, smallestSize);
    setNotice(notice_);
    view.onClosed = [this] {
        if (const QQuickItem* const root = opened_->view.rootObject()) {
            notice_ = root->property("notice").toString();
        }
        // Not while the window still handles the event.
        opened_.release()->deleteLater();
    };
}

void SettingsWindow::show(const QString& page) {
    if (!opened_) {
        open();
    }
    if (!page.isEmpty() && opened_->view.rootObject()) {
        opened_->view.rootObject()->setProperty("shownPage", page);
    }
    opened_->view.present();
}

void SettingsWindow::showReport() {
    show();
    QMetaObject::invokeMethod(opened_->view.rootObject(), "showReport");
}

void SettingsWindow::setNotice(const QString& notice) {
    notice_ = notice;
    if (opened_ && opened_->view.rootObject()) {
        opened_->view.rootObject()->setProperty("notice", notice);
    }
}

} // namespace kippo
