import QtQuick

/// Shows where the keyboard is, round its parent.
Rectangle {
    property bool shown: false
    property real distance: 2

    anchors.fill: parent
    anchors.margins: -distance
    visible: shown
    color: "transparent"
    border.width: 2
    border.color: SettingsTheme.accentText
    radius: SettingsTheme.controlCorner + distance
}
