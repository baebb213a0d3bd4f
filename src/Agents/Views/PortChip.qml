import QtQuick
import Kippo

/// A port on which something listens; a click opens it in the browser.
TextButton {
    id: chip

    required property int port

    text: ":" + port
    help: "Open http://localhost:" + port + " in the browser."
    padding: Theme.unit + 1
    implicitHeight: Theme.chipHeight
}
