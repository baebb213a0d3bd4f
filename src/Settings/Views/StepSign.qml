import QtQuick
import Kippo

/// The plus or minus of a number.
Item {
    id: step

    required property int sign
    required property bool isUnder
    required property bool isDown
    required property bool canStep

    implicitWidth: SettingsTheme.controlHeight
    implicitHeight: SettingsTheme.controlHeight

    Rectangle {
        anchors.fill: parent
        anchors.margins: 3
        radius: SettingsTheme.controlCorner - 3
        color: !step.canStep ? "transparent" : step.isDown ? SettingsTheme.selected
                                                           : step.isUnder ? SettingsTheme.hover : "transparent"
    }

    Icon {
        anchors.centerIn: parent
        width: 12
        height: 12
        name: step.sign
        color: SettingsTheme.textSecondary
        opacity: step.canStep ? 1 : 0.35
    }
}
