#include "App/SettingsWindow.h"

#include <QQuickItem>

namespace kippo {

namespace {

constexpr QSize usualSize{880, 660};
constexpr QSize smallestSize{720, 460};

/// A view that says when it has been closed.
class View final : public QQuickView {
public:
    std::function<void()> onClosed;

protected:
    bool event(QEvent* event) override {
        const bool isClosed = event->type() == QEvent::Close;
        const bool isHandled = QQuickView::event(event);
        if (isClosed && onClosed) {
            onClosed();
        }
        return isHandled;
    }
};

} // namespace

/// Everything that lives only while the window is open.
struct SettingsWindow::Opened final : QObject {
    explicit Opened(const Ports& ports)
        : preferences(ports.defaults, ports.screens, ports.look), agents(ports.agents, ports.scheduler) {}

    PreferencesViewModel preferences;
    AgentSettingsViewModel agents;
    View view;
};

SettingsWindow::SettingsWindow(Ports ports) : ports_(ports) {}
SettingsWindow::~SettingsWindow() = default;

QQuickView* SettingsWindow::view() { return opened_ ? &opened_->view : nullptr; }

void SettingsWindow::show(const QString& page) {
    if (!opened_) {
        opened_ = std::make_unique<Opened>(ports_);
        View& view = opened_->view;
        view.setTitle(QStringLiteral("Kippo Settings"));
        view.setResizeMode(QQuickView::SizeRootObjectToView);
        view.setMinimumSize(smallestSize);
        view.resize(usualSize);
        view.setInitialProperties({{QStringLiteral("preferences"), QVariant::fromValue(&opened_->preferences)},
                                   {QStringLiteral("agents"), QVariant::fromValue(&opened_->agents)}});
        view.setSource(QUrl{QStringLiteral("qrc:/qt/qml/Kippo/SettingsWindow.qml")});
        // Not while the window still handles the event.
        view.onClosed = [this] { opened_.release()->deleteLater(); };
    }
    if (!page.isEmpty() && opened_->view.rootObject()) {
        opened_->view.rootObject()->setProperty("shownPage", page);
    }
    if (opened_->view.isVisible()) {
        opened_->view.raise();
    }
    opened_->view.show();
    opened_->view.requestActivate();
}

} // namespace kippo
