#include "Platform/Qt/StatusNotifierTray.h"

#include "Platform/Qt/DBusProperties.h"

#include <QCoreApplication>
#include <QDBusMessage>
#include <QDBusMetaType>
#include <QDBusPendingCall>
#include <QtEndian>

namespace kippo {

namespace {

constexpr auto trayService = "org.kde.StatusNotifierWatcher";
constexpr auto trayPath = "/StatusNotifierWatcher";
constexpr auto interface = "org.kde.StatusNotifierItem";
constexpr auto itemPath = "/StatusNotifierItem";
constexpr auto menuPath = "/MenuBar";
constexpr auto active = "Active";
constexpr auto needsAttention = "NeedsAttention";

QList<TrayPixmap> pixmaps(const QList<QImage>& pictures) {
    QList<TrayPixmap> list;
    for (const QImage& picture : pictures) {
        const QImage image = picture.convertToFormat(QImage::Format_ARGB32);
        TrayPixmap pixmap{image.width(), image.height(), {}};
        for (int y = 0; y < image.height(); ++y) {
            QByteArray line{reinterpret_cast<const char*>(image.constScanLine(y)), image.width() * 4};
            qToBigEndian<quint32>(line.constData(), image.width(), line.data());
            pixmap.pixels += line;
        }
        list.append(pixmap);
    }
    return list;
}

} // namespace

QDBusArgument& operator<<(QDBusArgument& argument, const TrayPixmap& pixmap) {
    argument.beginStructure();
    argument << pixmap.width << pixmap.height << pixmap.pixels;
    argument.endStructure();
    return argument;
}

QDBusArgument& operator<<(QDBusArgument& argument, const TrayToolTip& tip) {
    argument.beginStructure();
    argument << QString{} << QList<TrayPixmap>{} << tip.title << tip.text;
    argument.endStructure();
    return argument;
}

// NOLINTBEGIN(bugprone-return-const-ref-from-parameter): the shape that Qt wants
const QDBusArgument& operator>>(const QDBusArgument& argument, TrayPixmap& pixmap) {
    argument.beginStructure();
    argument >> pixmap.width >> pixmap.height >> pixmap.pixels;
    argument.endStructure();
    return argument;
}

// Nobody sends us one; Qt asks for the operator.
const QDBusArgument& operator>>(const QDBusArgument& argument, TrayToolTip&) { return argument; }
// NOLINTEND(bugprone-return-const-ref-from-parameter)

StatusNotifierTray::StatusNotifierTray(const QDBusConnection& bus, const Look& look)
    : bus_(bus), name_(QStringLiteral("org.kde.StatusNotifierItem-%1-1").arg(QCoreApplication::applicationPid())),
      iconName_(look.iconName), pictures_(pixmaps(look.pictures)), attentionPictures_(pixmaps(look.attentionPictures)),
      menu_(bus, menuPath) {
    qDBusRegisterMetaType<TrayPixmap>();
    qDBusRegisterMetaType<QList<TrayPixmap>>();
    qDBusRegisterMetaType<TrayToolTip>();
    if (bus_.isConnected()) {
        watcher_.setConnection(bus_);
        watcher_.setWatchMode(QDBusServiceWatcher::WatchForRegistration);
        watcher_.addWatchedService(trayService);
        connect(&watcher_, &QDBusServiceWatcher::serviceRegistered, this, [this] { registerWithTray(); });
    }
}

StatusNotifierTray::~StatusNotifierTray() { hide(); }

void StatusNotifierTray::show(std::vector<MenuItem> menu) {
    menu_.set(std::move(menu));
    if (isShown_ || !bus_.isConnected()) {
        return;
    }
    isShown_ = true;
    menu_.publish();
    bus_.registerVirtualObject(itemPath, this);
    bus_.registerService(name_);
    registerWithTray();
}

void StatusNotifierTray::hide() {
    if (isShown_) {
        isShown_ = false;
        // A tray drops the item whose name goes.
        bus_.unregisterService(name_);
        bus_.unregisterObject(itemPath);
        menu_.withdraw();
    }
}

void StatusNotifierTray::setAttention(std::string reason) {
    const QString text = QString::fromStdString(reason);
    if (text == attention_) {
        return;
    }
    const bool changesStatus = text.isEmpty() != attention_.isEmpty();
    attention_ = text;
    signal("NewToolTip");
    if (changesStatus) {
        signal("NewStatus", {QString::fromLatin1(text.isEmpty() ? active : needsAttention)});
    }
}

void StatusNotifierTray::registerWithTray() {
    if (!isShown_) {
        return;
    }
    QDBusMessage message = QDBusMessage::createMethodCall(trayService, trayPath, trayService,
                                                          QStringLiteral("RegisterStatusNotifierItem"));
    message << name_;
    message.setAutoStartService(false);
    bus_.asyncCall(message);
}

QVariantMap StatusNotifierTray::properties() const {
    const QVariant noPictures = QVariant::fromValue(QList<TrayPixmap>{});
    return {{QStringLiteral("Category"), QStringLiteral("ApplicationStatus")},
            {QStringLiteral("Id"), QStringLiteral("kippo")},
            {QStringLiteral("Title"), QStringLiteral("Kippo")},
            {QStringLiteral("Status"), QString::fromLatin1(attention_.isEmpty() ? active : needsAttention)},
            {QStringLiteral("WindowId"), 0},
            {QStringLiteral("IconName"), iconName_},
            {QStringLiteral("IconPixmap"), QVariant::fromValue(pictures_)},
            {QStringLiteral("OverlayIconName"), QString{}},
            {QStringLiteral("OverlayIconPixmap"), noPictures},
            {QStringLiteral("AttentionIconName"), QString{}},
            {QStringLiteral("AttentionIconPixmap"), QVariant::fromValue(attentionPictures_)},
            {QStringLiteral("AttentionMovieName"), QString{}},
            {QStringLiteral("IconThemePath"), QString{}},
            {QStringLiteral("ToolTip"), QVariant::fromValue(TrayToolTip{QStringLiteral("Kippo"), attention_})},
            {QStringLiteral("ItemIsMenu"), false},
            {QStringLiteral("Menu"), QVariant::fromValue(QDBusObjectPath{menuPath})}};
}

bool StatusNotifierTray::handleMessage(const QDBusMessage& message, const QDBusConnection& connection) {
    if (message.interface() == QLatin1String{DBusProperties::interface}) {
        return DBusProperties::answer(message, connection, interface, properties());
    }
    const QString member = message.member();
    const QString types = message.signature();
    const bool isClick = member == u"Activate" || member == u"SecondaryActivate" || member == u"ContextMenu";
    if (!(isClick && types == u"ii") && !(member == u"Scroll" && types == u"is")) {
        return false;
    }
    // Trays that draw the menu themselves do so without asking.
    if (member == u"Activate" && onActivate) {
        QMetaObject::invokeMethod(this, onActivate, Qt::QueuedConnection);
    }
    return connection.send(message.createReply());
}

void StatusNotifierTray::signal(const char* name, const QVariantList& arguments) const {
    if (isShown_) {
        QDBusMessage message = QDBusMessage::createSignal(itemPath, interface, QString::fromLatin1(name));
        message.setArguments(arguments);
        bus_.send(message);
    }
}

} // namespace kippo
