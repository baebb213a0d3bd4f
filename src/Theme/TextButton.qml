import QtQuick

/// A small button: a word or two on a quiet ground. Works by pointer, keyboard and screen reader.
Rectangle {
    id: button

    required property string text
    /// What it does, in a sentence.
    property string help
    property color tone: Theme.textSecondary
    /// Between the text and the edges.
    property int padding: Theme.gap
    /// Pointer or keyboard are at it.
    readonly property bool isActive: pointer.hovered || activeFocus

    signal clicked

    implicitWidth: label.implicitWidth + 2 * padding
    implicitHeight: Theme.controlHeight
    radius: Theme.unit + 2
    color: pointer.hovered && enabled ? Theme.controlHover : Theme.control
    border.color: Theme.focus
    border.width: activeFocus ? 1 : 0
    opacity: enabled ? 1 : 0.6
    activeFocusOnTab: enabled

    Accessible.role: Accessible.Button
    Accessible.name: text
    Accessible.description: help
    Accessible.onPressAction: clicked()
    Keys.onReturnPressed: clicked()
    Keys.onEnterPressed: clicked()
    Keys.onSpacePressed: clicked()

    Behavior on color {
        ColorAnimation { duration: Motion.touch }
    }

    HoverHandler {
        id: pointer

        enabled: button.enabled
        cursorShape: Qt.PointingHandCursor
    }

    MouseArea {
        anchors.fill: parent
        onClicked: button.clicked()
    }

    PlainText {
        id: label

        anchors.fill: parent
        anchors.leftMargin: button.padding
        anchors.rightMargin: button.padding
        horizontalAlignment: Text.AlignHCenter
        text: button.text
        color: button.tone
        font.pixelSize: Theme.metaSize
        font.weight: Font.Medium
    }
}
