#include "App/WelcomeWindow.h"

#include "App/OrdinaryView.h"
#include "Theme/Appearance.h"

#include <QGuiApplication>
#include <QQuickItem>
#include <QScreen>
#include <utility>

namespace kippo {

namespace {

constexpr QSize usualSize{760, 620};
constexpr QSize smallestSize{640, 560};

} // namespace

/// Everything that lives only while the window is open.
struct WelcomeWindow::Opened final : QObject {
    explicit Opened(const Ports& ports)
        : appearance(ports.defaults, ports.look), agents(ports.agents, ports.scheduler), login(ports.loginItem),
          hotKeys(ports.hotKeys), preferences(ports.defaults, ports.screens), focus(ports.defaults, ports.scheduler),
          welcome(agents, ports.onMachine) {}

    QVariantMap properties() {
        return {{QStringLiteral("appearance"), QVariant::fromValue(&appearance)},
                {QStringLiteral("welcome"), QVariant::fromValue(&welcome)},
                {QStringLiteral("agents"), QVariant::fromValue(&agents)},
                {QStringLiteral("login"), QVariant::fromValue(&login)},
                {QStringLiteral("hotKeys"), QVariant::fromValue(&hotKeys)},
                {QStringLiteral("preferences"), QVariant::fromValue(&preferences)},
                {QStringLiteral("focusSettings"), QVariant::fromValue(&focus)}};
    }

    Appearance appearance;
    AgentSettingsViewModel agents;
    LoginViewModel login;
    HotKeysViewModel hotKeys;
    PreferencesViewModel preferences;
    FocusSettingsViewModel focus;
    WelcomeViewModel welcome;
    OrdinaryView view;
};

WelcomeWindow::WelcomeWindow(Ports ports) : ports_(std::move(ports)) {}
WelcomeWindow::~WelcomeWindow() = default;

QQuickView* WelcomeWindow::view() { return opened_ ? &opened_->view : nullptr; }

void WelcomeWindow::open() {
    opened_ = std::make_unique<Opened>(ports_);
    OrdinaryView& view = opened_->view;
    view.setTitle(QStringLiteral("Welcome to Kippo"));
    view.load(QStringLiteral("WelcomeWindow.qml"), opened_->properties(), usualSize, smallestSize);
    opened_->welcome.onFinish = [&view] { view.close(); };
    view.onClosed = [this] {
        // Not while the window still handles the event.
        opened_.release()->deleteLater();
        if (onEnded) {
            onEnded();
        }
    };
    centre();
}

void WelcomeWindow::centre() {
    const std::vector<Screen> screens = ports_.screens.screens();
    const Screen* const chosen = chooseScreen(screens, ports_.defaults.get<std::string>("display"));
    for (QScreen* const screen : QGuiApplication::screens()) {
        if (chosen && screen->name().toStdString() == chosen->name) {
            OrdinaryView& view = opened_->view;
            view.setScreen(screen);
            QRect place{QPoint{}, view.size()};
            place.moveCenter(screen->availableGeometry().center());
            view.setGeometry(place);
        }
    }
}

void WelcomeWindow::show() {
    if (!opened_) {
        open();
    }
    opened_->view.present();
}

} // namespace kippo
