#pragma once

#include <QDBusConnection>

/// The person's message bus.
namespace kippo::QtSessionBus {

/// Whether there seems to be one. Without an address Qt would start a bus of its own.
bool isThere();

/// The connection to it that all share; one that is not connected where there is none.
QDBusConnection connection();

} // namespace kippo::QtSessionBus
