#include "Platform/Qt/DBusMenu.h"

#include "Platform/Qt/DBusProperties.h"

#include <QCoreApplication>
#include <QDBusArgument>
#include <QDBusMessage>
#include <QDBusMetaType>
#include <QDBusVariant>
#include <algorithm>

namespace kippo {

namespace {

constexpr auto interface = "com.canonical.dbusmenu";
constexpr int root = 0;
constexpr uint protocolVersion = 3;
constexpr auto unknownLine = "com.canonical.dbusmenu.Error.UnknownItem";

/// The keys of a shortcut such as "Control+Alt+A", as dbusmenu lists them.
QList<QStringList> shortcutKeys(const std::string& shortcut) {
    return {QString::fromStdString(shortcut).split(u'+', Qt::SkipEmptyParts)};
}

/// An underscore would mark a mnemonic.
QString label(const std::string& text) { return QString::fromStdString(text).replace(u'_', QStringLiteral("__")); }

/// What a line has beyond the ordinary; absent properties have their usual values.
QVariantMap propertiesOf(const MenuItem& item) {
    if (item.isSeparator) {
        return {{QStringLiteral("type"), QStringLiteral("separator")}};
    }
    QVariantMap properties{{QStringLiteral("label"), label(item.text)}};
    if (!item.isEnabled) {
        properties.insert(QStringLiteral("enabled"), false);
    }
    if (item.isCheckable) {
        properties.insert(QStringLiteral("toggle-type"), QStringLiteral("checkmark"));
        properties.insert(QStringLiteral("toggle-state"), item.isChecked ? 1 : 0);
    }
    if (!item.shortcut.empty()) {
        properties.insert(QStringLiteral("shortcut"), QVariant::fromValue(shortcutKeys(item.shortcut)));
    }
    return properties;
}

/// Those of `properties` that are asked for; no names ask for all.
QVariantMap chosen(QVariantMap properties, const QStringList& names) {
    if (!names.isEmpty()) {
        properties.removeIf([&](const auto& property) { return !names.contains(property.key()); });
    }
    return properties;
}

} // namespace

QDBusArgument& operator<<(QDBusArgument& argument, const DBusMenuNode& node) {
    argument.beginStructure();
    argument << node.id << node.properties;
    argument.beginArray(QMetaType::fromType<QDBusVariant>());
    for (const DBusMenuNode& child : node.children) {
        argument << QDBusVariant{QVariant::fromValue(child)};
    }
    argument.endArray();
    argument.endStructure();
    return argument;
}

QDBusArgument& operator<<(QDBusArgument& argument, const DBusMenuProperties& line) {
    argument.beginStructure();
    argument << line.id << line.properties;
    argument.endStructure();
    return argument;
}

QDBusArgument& operator<<(QDBusArgument& argument, const DBusMenuPropertyNames& line) {
    argument.beginStructure();
    argument << line.id << line.names;
    argument.endStructure();
    return argument;
}

// Nobody sends us these; Qt asks for the operators.
// NOLINTBEGIN(bugprone-return-const-ref-from-parameter)
const QDBusArgument& operator>>(const QDBusArgument& argument, DBusMenuNode&) { return argument; }
const QDBusArgument& operator>>(const QDBusArgument& argument, DBusMenuProperties&) { return argument; }
const QDBusArgument& operator>>(const QDBusArgument& argument, DBusMenuPropertyNames&) { return argument; }
// NOLINTEND(bugprone-return-const-ref-from-parameter)

DBusMenu::DBusMenu(QDBusConnection bus, QString path) : bus_(std::move(bus)), path_(std::move(path)) {
    qDBusRegisterMetaType<DBusMenuNode>();
    qDBusRegisterMetaType<DBusMenuProperties>();
    qDBusRegisterMetaType<QList<DBusMenuProperties>>();
    qDBusRegisterMetaType<DBusMenuPropertyNames>();
    qDBusRegisterMetaType<QList<DBusMenuPropertyNames>>();
    qDBusRegisterMetaType<QList<QStringList>>();
}

void DBusMenu::publish() { isPublished_ = bus_.registerVirtualObject(path_, this); }

void DBusMenu::withdraw() {
    bus_.unregisterObject(path_);
    isPublished_ = false;
}

void DBusMenu::set(std::vector<MenuItem> items) {
    const bool keepsShape = hasShapeOf(items);
    if (!keepsShape) {
        firstId_ += static_cast<int>(items_.size());
    }
    std::swap(items_, items);
    if (keepsShape) {
        tellChanges(items);
    } else {
        signal("LayoutUpdated", {++revision_, root});
    }
}

bool DBusMenu::hasShapeOf(const std::vector<MenuItem>& items) const {
    return std::ranges::equal(items_, items, {}, &MenuItem::isSeparator, &MenuItem::isSeparator);
}

void DBusMenu::tellChanges(const std::vector<MenuItem>& before) const {
    QList<DBusMenuProperties> changed;
    QList<DBusMenuPropertyNames> removed;
    for (std::size_t index = 0; index < items_.size(); ++index) {
        const QVariantMap old = propertiesOf(before[index]);
        QVariantMap now = propertiesOf(items_[index]);
        QStringList gone;
        for (const QString& name : old.keys()) {
            if (!now.contains(name)) {
                gone.append(name);
            }
        }
        now.removeIf([&](const auto& property) { return old.value(property.key()) == property.value(); });
        if (!now.isEmpty()) {
            changed.append({idOf(index), now});
        }
        if (!gone.isEmpty()) {
            removed.append({idOf(index), gone});
        }
    }
    if (!changed.isEmpty() || !removed.isEmpty()) {
        signal("ItemsPropertiesUpdated", {QVariant::fromValue(changed), QVariant::fromValue(removed)});
    }
}

const MenuItem* DBusMenu::item(int id) const {
    const auto index = static_cast<std::size_t>(id - firstId_);
    return id >= firstId_ && index < items_.size() ? &items_[index] : nullptr;
}

DBusMenuNode DBusMenu::node(int id, int depth, const QStringList& names) const {
    if (const MenuItem* line = item(id)) {
        return {id, chosen(propertiesOf(*line), names), {}};
    }
    DBusMenuNode menu{root, chosen({{QStringLiteral("children-display"), QStringLiteral("submenu")}}, names), {}};
    for (std::size_t index = 0; depth != 0 && index < items_.size(); ++index) {
        menu.children.append(node(idOf(index), 0, names));
    }
    return menu;
}

QList<DBusMenuProperties> DBusMenu::groupProperties(const QList<int>& ids, const QStringList& names) const {
    QList<DBusMenuProperties> lines;
    for (std::size_t index = 0; index < items_.size(); ++index) {
        if (ids.isEmpty() || ids.contains(idOf(index))) {
            lines.append({idOf(index), chosen(propertiesOf(items_[index]), names)});
        }
    }
    return lines;
}

void DBusMenu::click(int id, const QString& event) const {
    const MenuItem* line = item(id);
    if (line == nullptr || event != u"clicked" || !line->isEnabled || !line->action) {
        return;
    }
    // Later: the action may change this menu, or end the program.
    QMetaObject::invokeMethod(QCoreApplication::instance(), line->action, Qt::QueuedConnection);
}

QVariantList DBusMenu::answer(const QDBusMessage& message, bool& isKnown) const {
    const QString member = message.member();
    const QString types = message.signature();
    const QVariantList arguments = message.arguments();
    isKnown = true;
    if (member == u"GetLayout" && types == u"iias") {
        const auto layout = node(arguments[0].toInt(), arguments[1].toInt(), arguments[2].toStringList());
        return {revision_, QVariant::fromValue(layout)};
    }
    if (member == u"GetGroupProperties" && types == u"aias") {
        const auto ids = qdbus_cast<QList<int>>(arguments[0]);
        return {QVariant::fromValue(groupProperties(ids, arguments[1].toStringList()))};
    }
    if (member == u"Event" && types == u"isvu") {
        click(arguments[0].toInt(), arguments[1].toString());
        return {};
    }
    if (member == u"EventGroup" && types == u"a(isvu)") {
        const auto events = arguments[0].value<QDBusArgument>();
        for (events.beginArray(); !events.atEnd();) {
            int id = 0;
            QString event;
            QDBusVariant data;
            uint time = 0;
            events.beginStructure();
            events >> id >> event >> data >> time;
            events.endStructure();
            click(id, event);
        }
        return {QVariant::fromValue(QList<int>{})};
    }
    if (member == u"AboutToShow" && types == u"i") {
        return {false};
    }
    if (member == u"AboutToShowGroup" && types == u"ai") {
        return {QVariant::fromValue(QList<int>{}), QVariant::fromValue(QList<int>{})};
    }
    isKnown = false;
    return {};
}

bool DBusMenu::handleMessage(const QDBusMessage& message, const QDBusConnection& connection) {
    if (message.interface() == QLatin1String{DBusProperties::interface}) {
        return DBusProperties::answer(message, connection, interface,
                                      {{QStringLiteral("Version"), protocolVersion},
                                       {QStringLiteral("TextDirection"), QStringLiteral("ltr")},
                                       {QStringLiteral("Status"), QStringLiteral("normal")},
                                       {QStringLiteral("IconThemePath"), QStringList{}}});
    }
    if (message.member() == u"GetProperty" && message.signature() == u"is") {
        const MenuItem* line = item(message.arguments()[0].toInt());
        const QVariant value = line ? propertiesOf(*line).value(message.arguments()[1].toString()) : QVariant{};
        return connection.send(
            value.isValid() ? message.createReply(QVariant::fromValue(QDBusVariant{value}))
                            : message.createErrorReply(unknownLine, QStringLiteral("There is no such property.")));
    }
    bool isKnown = false;
    const QVariantList reply = answer(message, isKnown);
    return isKnown && connection.send(message.createReply(reply));
}

void DBusMenu::signal(const char* name, const QVariantList& arguments) const {
    if (isPublished_) {
        QDBusMessage message =
            QDBusMessage::createSignal(path_, QString::fromLatin1(interface), QString::fromLatin1(name));
        message.setArguments(arguments);
        bus_.send(message);
    }
}

} // namespace kippo
