#include "Platform/Qt/DBusProperties.h"

#include <QDBusError>
#include <QDBusVariant>

namespace kippo::DBusProperties {

bool answer(const QDBusMessage& message, const QDBusConnection& connection, const char* owner,
            const QVariantMap& properties) {
    const QString member = message.member();
    const QVariantList arguments = message.arguments();
    if (arguments.isEmpty()) {
        return false;
    }
    const QString asked = arguments[0].toString();
    const bool isOurs = asked.isEmpty() || asked == QLatin1String{owner};
    if (member == u"GetAll" && message.signature() == u"s") {
        return connection.send(message.createReply(isOurs ? properties : QVariantMap{}));
    }
    if (member == u"Get" && message.signature() == u"ss") {
        const QVariant value = isOurs ? properties.value(arguments[1].toString()) : QVariant{};
        return connection.send(
            value.isValid()
                ? message.createReply(QVariant::fromValue(QDBusVariant{value}))
                : message.createErrorReply(QDBusError::UnknownProperty, QStringLiteral("There is no such property.")));
    }
    if (member == u"Set" && message.signature() == u"ssv") {
        return connection.send(
            message.createErrorReply(QDBusError::PropertyReadOnly, QStringLiteral("This property cannot be set.")));
    }
    return false;
}

} // namespace kippo::DBusProperties
