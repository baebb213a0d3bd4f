#pragma once

#include <QDBusConnection>
#include <QDBusMessage>
#include <QVariantMap>

/// The standard interface through which others read an object's properties, for objects that handle messages.
namespace kippo::DBusProperties {

inline constexpr auto interface = "org.freedesktop.DBus.Properties";

/// Answers a message to that interface for an object whose one interface is `owner`, with these properties, none of
/// which can be set. False when it is none that the interface has.
bool answer(const QDBusMessage& message, const QDBusConnection& connection, const char* owner,
            const QVariantMap& properties);

} // namespace kippo::DBusProperties
