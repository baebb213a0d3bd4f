#include "Platform/Qt/QtScreens.h"

#include <QGuiApplication>
#include <QScreen>
#include <algorithm>
#include <array>

namespace kippo {

namespace {

bool isBuiltIn(const QString& output) {
    static constexpr std::array connectors{"eDP", "LVDS", "DSI"};
    return std::ranges::any_of(connectors, [&](const char* connector) {
        return output.startsWith(QLatin1String{connector}, Qt::CaseInsensitive);
    });
}

} // namespace

QtScreens::QtScreens() {
    changed_.setSingleShot(true);
    changed_.setInterval(0);
    connect(&changed_, &QTimer::timeout, this, [this] { observers_.notify(); });
    const auto change = [this] { changed_.start(); };
    connect(qGuiApp, &QGuiApplication::screenRemoved, this, change);
    connect(qGuiApp, &QGuiApplication::primaryScreenChanged, this, change);
    connect(qGuiApp, &QGuiApplication::screenAdded, this, [this](QScreen* screen) {
        follow(screen);
        changed_.start();
    });
    for (QScreen* screen : QGuiApplication::screens()) {
        follow(screen);
    }
}

void QtScreens::follow(QScreen* screen) {
    const auto change = [this] { changed_.start(); };
    connect(screen, &QScreen::geometryChanged, this, change);
    connect(screen, &QScreen::availableGeometryChanged, this, change);
    connect(screen, &QScreen::physicalDotsPerInchChanged, this, change);
    connect(screen, &QScreen::logicalDotsPerInchChanged, this, change);
}

std::vector<Screen> QtScreens::screens() const {
    std::vector<Screen> found;
    for (const QScreen* screen : QGuiApplication::screens()) {
        const QRect frame = screen->geometry();
        if (frame.isEmpty()) {
            continue; // stands in while no screen is connected
        }
        Screen one;
        one.name = screen->name().toStdString();
        one.frame = {static_cast<double>(frame.x()), static_cast<double>(frame.y()), static_cast<double>(frame.width()),
                     static_cast<double>(frame.height())};
        one.scale = screen->devicePixelRatio();
        one.isBuiltIn = isBuiltIn(screen->name());
        one.isPrimary = screen == QGuiApplication::primaryScreen();
        one.topInset = screen->availableGeometry().y() - frame.y();
        found.push_back(std::move(one));
    }
    return found;
}

Subscription QtScreens::observe(std::function<void()> callback) { return observers_.add(std::move(callback)); }

} // namespace kippo
