import QtQuick
import Kippo

/// An answer in the mascot's bubble.
Rectangle {
    id: button

    required property string title
    property bool isPrimary: false

    signal clicked

    implicitWidth: Math.min(label.implicitWidth + 2 * Theme.margin - Theme.unit, 200)
    implicitHeight: 28
    radius: height / 2
    color: isPrimary ? (pointer.hovered ? Theme.textSecondary : Theme.text) : (pointer.hovered ? Theme.controlHover : Theme.control)
    activeFocusOnTab: true
    scale: tap.pressed ? 0.97 : 1

    Accessible.role: Accessible.Button
    Accessible.name: title
    Accessible.onPressAction: clicked()

    Keys.onReturnPressed: clicked()
    Keys.onEnterPressed: clicked()
    Keys.onSpacePressed: clicked()

    Rectangle {
        anchors.fill: parent
        anchors.margins: -3
        radius: height / 2
        color: "transparent"
        border.width: 2
        border.color: Theme.focus
        visible: button.activeFocus
    }

    PlainText {
        id: label

        anchors.centerIn: parent
        width: Math.min(implicitWidth, parent.width - Theme.margin)
        text: button.title
        color: button.isPrimary ? Theme.surface : Theme.text
        font.weight: Font.DemiBold
    }

    HoverHandler {
        id: pointer

        cursorShape: Qt.PointingHandCursor
    }

    TapHandler {
        id: tap

        onTapped: button.clicked()
    }
}
