#include "Platform/Qt/QtDesktopLook.h"

#include "Platform/Qt/QtSessionBus.h"

#include <QColor>
#include <QDBusArgument>
#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusPendingCallWatcher>
#include <QDBusPendingReply>
#include <QEvent>
#include <QGuiApplication>
#include <QPalette>
#include <utility>

namespace kippo {

namespace {

constexpr auto service = "org.freedesktop.portal.Desktop";
constexpr auto path = "/org/freedesktop/portal/desktop";
constexpr auto interface = "org.freedesktop.portal.Settings";
constexpr auto appearance = "org.freedesktop.appearance";
constexpr auto schemeKey = "color-scheme";
constexpr auto accentKey = "accent-color";
constexpr auto motionKey = "reduced-motion";
constexpr auto gnome = "org.gnome.desktop.interface";
constexpr auto animationsKey = "enable-animations";

bool isPaletteDark() { return QGuiApplication::palette().color(QPalette::Window).lightness() < 128; }

/// The value inside however many variants it comes in.
QVariant unwrapped(QVariant value) {
    while (value.userType() == qMetaTypeId<QDBusVariant>()) {
        value = value.value<QDBusVariant>().variant();
    }
    return value;
}

/// The portal's red, green and blue, each 0 to 1, as 0xRRGGBB. It says "none" with values outside of that.
std::optional<std::uint32_t> colour(const QVariant& value) {
    if (value.userType() != qMetaTypeId<QDBusArgument>()) {
        return {};
    }
    const auto argument = value.value<QDBusArgument>();
    if (argument.currentSignature() != u"(ddd)") {
        return {};
    }
    double red = -1, green = -1, blue = -1;
    argument.beginStructure();
    argument >> red >> green >> blue;
    argument.endStructure();
    for (const double part : {red, green, blue}) {
        if (!(part >= 0 && part <= 1)) {
            return {};
        }
    }
    return QColor::fromRgbF(static_cast<float>(red), static_cast<float>(green), static_cast<float>(blue)).rgb() &
           0xffffffU;
}

} // namespace

QtDesktopLook::QtDesktopLook() : isDark_(isPaletteDark()) {
    qGuiApp->installEventFilter(this);
    if (QtSessionBus::isThere()) {
        QDBusConnection::sessionBus().connect(QString{}, path, interface, QStringLiteral("SettingChanged"), this,
                                              SLOT(settingChanged(QString, QString, QDBusVariant)));
        askPortal(appearance, schemeKey);
        askPortal(appearance, accentKey);
        askPortal(appearance, motionKey);
        askPortal(gnome, animationsKey);
    }
}

Subscription QtDesktopLook::observe(std::function<void()> callback) { return observers_.add(std::move(callback)); }

void QtDesktopLook::askPortal(const char* group, const char* key) {
    QDBusMessage question = QDBusMessage::createMethodCall(service, path, interface, QStringLiteral("Read"));
    question << QString::fromLatin1(group) << QString::fromLatin1(key);
    auto* watcher = new QDBusPendingCallWatcher{QDBusConnection::sessionBus().asyncCall(question), this};
    connect(watcher, &QDBusPendingCallWatcher::finished, this, [this, watcher, group, key] {
        const QDBusPendingReply<QDBusVariant> reply = *watcher;
        if (!reply.isError()) {
            take(QString::fromLatin1(group), QString::fromLatin1(key), unwrapped(QVariant::fromValue(reply.value())));
        }
        watcher->deleteLater();
    });
}

void QtDesktopLook::settingChanged(const QString& changedGroup, const QString& changedKey, const QDBusVariant& value) {
    take(changedGroup, changedKey, unwrapped(value.variant()));
}

bool QtDesktopLook::eventFilter(QObject* watched, QEvent* event) {
    if (event->type() == QEvent::ApplicationPaletteChange) {
        update();
    }
    return QObject::eventFilter(watched, event);
}

void QtDesktopLook::take(const QString& group, const QString& key, const QVariant& value) {
    if (group == QLatin1String{gnome} && key == QLatin1String{animationsKey}) {
        keep(isStill_, !value.toBool());
    } else if (group != QLatin1String{appearance}) {
        return;
    } else if (key == QLatin1String{schemeKey}) {
        scheme_ = value.toUInt();
        update();
    } else if (key == QLatin1String{accentKey}) {
        keep(accent_, colour(value));
    } else if (key == QLatin1String{motionKey}) {
        keep(reducesMotion_, value.toUInt() == 1);
    }
}

template <typename T> void QtDesktopLook::keep(T& known, T value) {
    if (known != value) {
        known = std::move(value);
        observers_.notify();
    }
}

void QtDesktopLook::update() {
    const bool isDark = scheme_ == 1U || (scheme_.value_or(0) == 0 && isPaletteDark());
    if (isDark != isDark_) {
        isDark_ = isDark;
        observers_.notify();
    }
}

} // namespace kippo
