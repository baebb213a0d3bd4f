import QtQuick
import Kippo

/// A button of the focus page. The first of its row stands out, in the colour of the phase.
Rectangle {
    id: button

    required property string text
    /// For a screen reader, where the text alone says too little; and what it does, in a sentence.
    property string spoken: text
    property string help
    property bool isPrimary: false
    property color tint: Theme.focusing
    readonly property bool isActive: pointer.hovered || activeFocus

    signal clicked

    implicitWidth: label.implicitWidth + 2 * (Theme.margin - 2)
    implicitHeight: 30
    radius: height / 2
    color: isPrimary ? (pointer.hovered ? Qt.lighter(tint, 1.12) : tint) : (pointer.hovered ? Theme.controlHover : Theme.control)
    activeFocusOnTab: true
    scale: touch.pressed ? 0.97 : 1

    Accessible.role: Accessible.Button
    Accessible.name: spoken
    Accessible.description: help
    Accessible.onPressAction: clicked()

    Keys.onReturnPressed: clicked()
    Keys.onEnterPressed: clicked()
    Keys.onSpacePressed: clicked()

    Behavior on color {
        ColorAnimation { duration: Motion.touch }
    }

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
        text: button.text
        color: button.isPrimary ? Theme.surface : Theme.text
        font.weight: Font.DemiBold
    }

    HoverHandler {
        id: pointer

        cursorShape: Qt.PointingHandCursor
    }

    TapHandler {
        id: touch

        onTapped: button.clicked()
    }
}
