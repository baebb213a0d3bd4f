import QtQuick
import Kippo

/// A session's status: its own colour and its own shape. Stands still, so that it costs nothing.
StatusGlyph {
    implicitWidth: Theme.lightSize
    implicitHeight: Theme.lightSize
    color: Theme.statusColor(status)
}
