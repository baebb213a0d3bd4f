#include "Platform/Qt/QtSessionBus.h"

#include <QFile>

namespace kippo::QtSessionBus {

bool isThere() {
    return qEnvironmentVariableIsSet("DBUS_SESSION_BUS_ADDRESS") ||
           QFile::exists(qEnvironmentVariable("XDG_RUNTIME_DIR") + QStringLiteral("/bus"));
}

QDBusConnection connection() {
    return isThere() ? QDBusConnection::sessionBus() : QDBusConnection{QStringLiteral("there is none")};
}

} // namespace kippo::QtSessionBus
