import QtQuick
import QtQuick.Templates as T
import Kippo

/// A small button that is only a drawing; `spoken` names it.
T.Button {
    id: button

    required property string spoken
    property int drawing: Icon.Cross
    property real turn: 0

    implicitWidth: SettingsTheme.controlHeight
    implicitHeight: SettingsTheme.controlHeight
    hoverEnabled: true
    focusPolicy: Qt.StrongFocus
    Accessible.name: spoken
    Keys.onReturnPressed: clicked()
    Keys.onEnterPressed: clicked()

    contentItem: Item {
        Icon {
            anchors.centerIn: parent
            width: 14
            height: 14
            name: button.drawing
            color: button.hovered ? SettingsTheme.text : SettingsTheme.textTertiary
            rotation: button.turn
        }
    }

    background: Rectangle {
        radius: SettingsTheme.controlCorner
        color: button.down || button.hovered ? SettingsTheme.hover : "transparent"

        FocusRing {
            shown: button.visualFocus
            distance: 0
        }
    }
}
