#pragma once

#include "Platform/Qt/DBusMenu.h"
#include "Support/TrayItem.h"

#include <QDBusServiceWatcher>
#include <QImage>

namespace kippo {

/// A picture as org.kde.StatusNotifierItem passes it: 32 bits a pixel, alpha first, in network byte order.
struct TrayPixmap {
    int width = 0;
    int height = 0;
    QByteArray pixels;
};
QDBusArgument& operator<<(QDBusArgument& argument, const TrayPixmap& pixmap);
const QDBusArgument& operator>>(const QDBusArgument& argument, TrayPixmap& pixmap);

/// What a tray shows of an item that is pointed at.
struct TrayToolTip {
    QString title;
    QString text;
};
QDBusArgument& operator<<(QDBusArgument& argument, const TrayToolTip& tip);
const QDBusArgument& operator>>(const QDBusArgument& argument, TrayToolTip& tip);

/// The tray item that the desktop draws from what it reads over the message bus (org.kde.StatusNotifierItem). Own code:
/// Qt's needs Qt Widgets, misses a tray that starts later and is not told when one comes back.
class StatusNotifierTray final : public QDBusVirtualObject, public TrayItem {
public:
    /// How the item looks: the same picture in several sizes, and for the tray to colour itself the name of an icon
    /// that is installed, or none.
    struct Look {
        QList<QImage> pictures;
        QList<QImage> attentionPictures;
        QString iconName{};
    };

    StatusNotifierTray(const QDBusConnection& bus, const Look& look);
    ~StatusNotifierTray() override;

    void show(std::vector<MenuItem> menu) override;
    void hide() override;
    void setAttention(std::string reason) override;

    /// Trays know what they call.
    QString introspect(const QString&) const override { return {}; }
    bool handleMessage(const QDBusMessage& message, const QDBusConnection& connection) override;

private:
    void registerWithTray();
    QVariantMap properties() const;
    void signal(const char* name, const QVariantList& arguments = {}) const;

    QDBusConnection bus_;
    QString name_; ///< on the bus while the item is shown
    QString iconName_;
    QList<TrayPixmap> pictures_;
    QList<TrayPixmap> attentionPictures_;
    DBusMenu menu_;
    QDBusServiceWatcher watcher_;
    QString attention_;
    bool isShown_ = false;
};

} // namespace kippo

Q_DECLARE_METATYPE(kippo::TrayPixmap)
Q_DECLARE_METATYPE(kippo::TrayToolTip)
