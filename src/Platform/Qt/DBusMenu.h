#pragma once

#include "Support/TrayItem.h"

#include <QDBusArgument>
#include <QDBusConnection>
#include <QDBusVirtualObject>
#include <QVariantMap>
#include <cstdint>

namespace kippo {

/// One line of a menu and those below it, as com.canonical.dbusmenu passes it.
struct DBusMenuNode {
    int id = 0;
    QVariantMap properties;
    QList<DBusMenuNode> children;
};

/// The properties of one line, and their names alone.
struct DBusMenuProperties {
    int id = 0;
    QVariantMap properties;
};
struct DBusMenuPropertyNames {
    int id = 0;
    QStringList names;
};

QDBusArgument& operator<<(QDBusArgument& argument, const DBusMenuNode& node);
QDBusArgument& operator<<(QDBusArgument& argument, const DBusMenuProperties& line);
QDBusArgument& operator<<(QDBusArgument& argument, const DBusMenuPropertyNames& line);
const QDBusArgument& operator>>(const QDBusArgument& argument, DBusMenuNode& node);
const QDBusArgument& operator>>(const QDBusArgument& argument, DBusMenuProperties& line);
const QDBusArgument& operator>>(const QDBusArgument& argument, DBusMenuPropertyNames& line);

/// A menu without submenus that another program of the desktop draws (com.canonical.dbusmenu). Lines keep their numbers
/// while only their texts and states change; a menu of another shape gets new ones, so that a click on a line that is
/// no longer there does nothing.
class DBusMenu final : public QDBusVirtualObject {
public:
    /// Not there until `publish`.
    DBusMenu(QDBusConnection bus, QString path);

    void set(std::vector<MenuItem> items);
    void publish();
    void withdraw();

    /// Trays know what they call.
    QString introspect(const QString&) const override { return {}; }
    bool handleMessage(const QDBusMessage& message, const QDBusConnection& connection) override;

private:
    bool hasShapeOf(const std::vector<MenuItem>& items) const;
    void tellChanges(const std::vector<MenuItem>& before) const;
    const MenuItem* item(int id) const;
    int idOf(std::size_t index) const { return firstId_ + static_cast<int>(index); }

    DBusMenuNode node(int id, int depth, const QStringList& names) const;
    QList<DBusMenuProperties> groupProperties(const QList<int>& ids, const QStringList& names) const;
    void click(int id, const QString& event) const;
    QVariantList answer(const QDBusMessage& message, bool& isKnown) const;
    void signal(const char* name, const QVariantList& arguments) const;

    QDBusConnection bus_;
    QString path_;
    std::vector<MenuItem> items_;
    int firstId_ = 1; ///< of the first line; the menu itself is 0
    std::uint32_t revision_ = 1;
    bool isPublished_ = false;
};

} // namespace kippo

Q_DECLARE_METATYPE(kippo::DBusMenuNode)
Q_DECLARE_METATYPE(kippo::DBusMenuProperties)
Q_DECLARE_METATYPE(kippo::DBusMenuPropertyNames)
