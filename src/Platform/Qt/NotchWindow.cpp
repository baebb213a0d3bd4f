#include "Platform/Qt/NotchWindow.h"

#include "Platform/Linux/X11Panel.h"

#include <QAbstractEventDispatcher>
#include <QGuiApplication>
#include <QScreen>
#include <algorithm>
#include <chrono>
#include <cmath>
#include <iterator>

namespace kippo {

/// The scene, which tells when the pointer comes, moves or leaves.
class NotchWindow::View final : public QQuickView {
public:
    explicit View(NotchWindow& owner) : owner_(owner) {}

protected:
    bool event(QEvent* event) override {
        switch (event->type()) {
        case QEvent::Enter:
        case QEvent::Leave:
            owner_.pointerIsOver(event->type() == QEvent::Enter);
            break;
        case QEvent::MouseMove:
            owner_.pointerIsOver(true);
            break;
        default:
            break;
        }
        return QQuickView::event(event);
    }

private:
    NotchWindow& owner_;
};

NotchWindow::NotchWindow() : view_(std::make_unique<View>(*this)) {
    view_->setFlags(Qt::Tool | Qt::X11BypassWindowManagerHint | Qt::FramelessWindowHint | Qt::WindowDoesNotAcceptFocus);
    QSurfaceFormat format = view_->format();
    format.setAlphaBufferSize(8);
    view_->setFormat(format);
    view_->setColor(Qt::transparent);
    view_->setResizeMode(QQuickView::SizeRootObjectToView);
    QObject::connect(view_.get(), &QWindow::screenChanged, view_.get(), [this] { applyShape(); });
    if (QGuiApplication::platformName() == "xcb") {
        x11_ = X11Panel::connect();
    }
    if (x11_) {
        listenToX11();
    }
}

NotchWindow::~NotchWindow() = default;

void NotchWindow::listenToX11() {
    x11_->onMoved = [this] { moves_.notify(); };
    x11_->onPressed = [this] { presses_.notify(); };
    x11_->onCheckLater = [this](std::chrono::milliseconds delay) {
        QTimer::singleShot(delay, view_.get(), [this] { x11_->checkStacking(); });
    };
    x11Readable_ = std::make_unique<QSocketNotifier>(x11_->fileDescriptor(), QSocketNotifier::Read);
    QObject::connect(x11Readable_.get(), &QSocketNotifier::activated, view_.get(), [this] { readX11(); });
    QObject::connect(QAbstractEventDispatcher::instance(), &QAbstractEventDispatcher::aboutToBlock, view_.get(),
                     [this] { x11_->processQueuedEvents(); });
}

void NotchWindow::readX11() {
    if (!x11_->processEvents()) {
        x11Readable_->setEnabled(false); // the server is gone, and Qt is about to end the application
    }
}

QQuickView& NotchWindow::view() { return *view_; }

// The panel

void NotchWindow::place(const Rect& frame) {
    frame_ = frame;
    const QRect geometry{static_cast<int>(std::lround(frame.x)), static_cast<int>(std::lround(frame.y)),
                         static_cast<int>(std::lround(frame.width)), static_cast<int>(std::lround(frame.height))};
    if (QScreen* screen = QGuiApplication::screenAt({geometry.center().x(), geometry.y()})) {
        view_->setScreen(screen);
    }
    view_->setGeometry(geometry);
    applyShape();
}

void NotchWindow::show(const NotchShapes& shapes, NotchModel::Mode mode) {
    if (onShow) {
        onShow(shapes, mode);
    }
}

void NotchWindow::setShape(const NotchShape& drawn) {
    drawn_ = drawn;
    applyShape();
}

void NotchWindow::setBubble(const Rect& bubble, double radius) {
    bubble_ = bubble;
    bubbleRadius_ = radius;
    applyShape();
}

void NotchWindow::applyShape() {
    if (x11_) {
        const double scale = view_->devicePixelRatio();
        std::vector<PixelRect> shape = NotchOutline{drawn_}.pixels(frame_.width / 2, scale);
        std::ranges::copy(roundedPixels(bubble_, bubbleRadius_, scale), std::back_inserter(shape));
        x11_->setShape(std::move(shape));
    }
}

void NotchWindow::setVisible(bool visible) {
    if (visible && x11_) {
        view_->create();
        syncWithQt();
        x11_->setWindow(static_cast<xcb_window_t>(view_->winId()));
    }
    view_->setVisible(visible);
}

void NotchWindow::setTakesKeyboard(bool takes) {
    if (takes == takesKeyboard_) {
        return;
    }
    takesKeyboard_ = takes;
    view_->setFlag(Qt::WindowDoesNotAcceptFocus, !takes);
    if (x11_) {
        syncWithQt();
        takes ? x11_->takeKeyboard() : x11_->giveBackKeyboard();
    } else if (takes) {
        view_->requestActivate();
    }
}

/// Lets the server see what Qt has asked for before it hears from our own connection.
void NotchWindow::syncWithQt() {
    if (const auto* x11 = qGuiApp->nativeInterface<QNativeInterface::QX11Application>()) {
        xcb_connection_t* connection = x11->connection();
        std::free(xcb_get_input_focus_reply(connection, xcb_get_input_focus(connection), nullptr));
    }
}

// The pointer

void NotchWindow::pointerIsOver(bool over) {
    if (x11_) {
        x11_->setPointerOver(over);
    }
    moves_.notify();
}

std::optional<Point> NotchWindow::position() const {
    const auto pointer = x11_ ? x11_->pointer() : std::nullopt;
    if (!pointer) {
        return std::nullopt;
    }
    // The middle of the pixel that the pointer is on, as the shape counts its pixels.
    const double scale = view_->devicePixelRatio();
    return Point{frame_.x + (pointer->x + 0.5) / scale, frame_.y + (pointer->y + 0.5) / scale};
}

bool NotchWindow::isButtonPressed() const {
    const auto pointer = x11_ ? x11_->pointer() : std::nullopt;
    return pointer && pointer->isPressed;
}

void NotchWindow::setFollowing(bool everywhere) {
    if (x11_) {
        x11_->setFollowing(everywhere);
    }
}

Subscription NotchWindow::observeMoves(std::function<void()> callback) { return moves_.add(std::move(callback)); }

Subscription NotchWindow::observePresses(std::function<void()> callback) { return presses_.add(std::move(callback)); }

} // namespace kippo
