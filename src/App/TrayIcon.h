#pragma once

#include <QImage>
#include <QString>

/// How Kippo looks in the tray.
namespace kippo::TrayIcon {

/// His head in the sizes that trays ask for, in one colour that shows on light and dark ones; with a dot of the colour
/// that means "needs you".
QList<QImage> pictures(bool withDot);

/// The name of the installed icon that the tray may colour to suit itself; empty where none is installed, or where
/// `desktop` (XDG_CURRENT_DESKTOP) would show it as it is, black on whatever its panel has.
QString symbolicName(const QString& desktop);

} // namespace kippo::TrayIcon
