import QtQuick
import Kippo

/// A button of the strip beside the cut-out: an icon alone. Works by pointer, keyboard and screen reader.
Item {
    id: button

    required property int icon
    /// What it does, in a word or two.
    required property string name
    property bool isChecked: false
    property bool isCheckable: false

    signal clicked

    width: 22
    activeFocusOnTab: true

    Accessible.role: isCheckable ? Accessible.CheckBox : Accessible.Button
    Accessible.name: name
    Accessible.checkable: isCheckable
    Accessible.checked: isChecked
    Accessible.onPressAction: clicked()
    Accessible.onToggleAction: clicked()
    Keys.onReturnPressed: clicked()
    Keys.onEnterPressed: clicked()
    Keys.onSpacePressed: clicked()

    HoverHandler {
        id: over

        cursorShape: Qt.PointingHandCursor
    }

    MouseArea {
        anchors.fill: parent
        onClicked: button.clicked()
    }

    Rectangle {
        anchors.centerIn: parent
        width: height
        height: Math.min(22, parent.height - 4)
        radius: Theme.unit + 2
        color: over.hovered ? Theme.control : "transparent"
        border.color: Theme.focus
        border.width: button.activeFocus ? 1 : 0
    }

    Icon {
        anchors.centerIn: parent
        width: 15
        height: 15
        name: button.icon
        color: button.isChecked ? Theme.accent : over.hovered || button.activeFocus ? Theme.text : Theme.textTertiary
    }
}
