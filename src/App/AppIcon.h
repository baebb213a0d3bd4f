#pragma once

#include <QIcon>

/// The application's icon, for windows of desktops that do not find the installed one.
namespace kippo::AppIcon {

/// In the sizes that title bars, docks and window lists ask for.
QIcon icon();

} // namespace kippo::AppIcon
