#include "Platform/Qt/QtDesktopLook.h"

#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusPendingCallWatcher>
#include <QDBusPendingReply>
#include <QEvent>
#include <QFile>
#include <QGuiApplication>
#include <QPalette>

namespace kippo {

namespace {

constexpr auto service = "org.freedesktop.portal.Desktop";
constexpr auto path = "/org/freedesktop/portal/desktop";
constexpr auto interface = "org.freedesktop.portal.Settings";
constexpr auto group = "org.freedesktop.appearance";
constexpr auto key = "color-scheme";

/// Without an address Qt would start a bus of its own.
bool hasSessionBus() {
    return qEnvironmentVariableIsSet("DBUS_SESSION_BUS_ADDRESS") ||
           QFile::exists(qEnvironmentVariable("XDG_RUNTIME_DIR") + QStringLiteral("/bus"));
}

bool isPaletteDark() { return QGuiApplication::palette().color(QPalette::Window).lightness() < 128; }

/// The value inside however many variants it comes in.
QVariant unwrapped(QVariant value) {
    while (value.userType() == qMetaTypeId<QDBusVariant>()) {
        value = value.value<QDBusVariant>().variant();
    }
    return value;
}

} // namespace

QtDesktopLook::QtDesktopLook() : isDark_(isPaletteDark()) {
    qGuiApp->installEventFilter(this);
    if (hasSessionBus()) {
        askPortal();
    }
}

Subscription QtDesktopLook::observe(std::function<void()> callback) { return observers_.add(std::move(callback)); }

void QtDesktopLook::askPortal() {
    QDBusConnection bus = QDBusConnection::sessionBus();
    bus.connect(QString{}, path, interface, QStringLiteral("SettingChanged"), this,
                SLOT(settingChanged(QString, QString, QDBusVariant)));
    QDBusMessage question = QDBusMessage::createMethodCall(service, path, interface, QStringLiteral("Read"));
    question << QString::fromLatin1(group) << QString::fromLatin1(key);
    auto* watcher = new QDBusPendingCallWatcher{bus.asyncCall(question), this};
    connect(watcher, &QDBusPendingCallWatcher::finished, this, [this, watcher] {
        const QDBusPendingReply<QDBusVariant> reply = *watcher;
        if (!reply.isError()) {
            take(unwrapped(QVariant::fromValue(reply.value())).toUInt());
        }
        watcher->deleteLater();
    });
}

void QtDesktopLook::settingChanged(const QString& changedGroup, const QString& changedKey, const QDBusVariant& value) {
    if (changedGroup == QLatin1String{group} && changedKey == QLatin1String{key}) {
        take(unwrapped(value.variant()).toUInt());
    }
}

bool QtDesktopLook::eventFilter(QObject* watched, QEvent* event) {
    if (event->type() == QEvent::ApplicationPaletteChange) {
        update();
    }
    return QObject::eventFilter(watched, event);
}

void QtDesktopLook::take(std::optional<unsigned> portal) {
    portal_ = portal;
    update();
}

void QtDesktopLook::update() {
    const bool isDark = portal_ == 1U || (portal_.value_or(0) == 0 && isPaletteDark());
    if (isDark != isDark_) {
        isDark_ = isDark;
        observers_.notify();
    }
}

} // namespace kippo
