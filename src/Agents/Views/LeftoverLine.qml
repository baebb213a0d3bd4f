import QtQuick
import Kippo

/// A folder that can be built again: what and whose it is, how big, and the way to the Trash.
Item {
    id: line

    required property LeftBehindViewModel leftBehind
    required property string path
    required property string name
    required property string project
    required property string size
    required property bool isMoving
    required property string spoken

    height: Theme.shortRowHeight

    Accessible.role: Accessible.ListItem
    Accessible.name: spoken

    Rectangle {
        anchors.fill: parent
        radius: Theme.corner - 2
        color: Theme.hover
        visible: pointer.hovered
    }

    HoverHandler {
        id: pointer
    }

    PlainText {
        id: label

        x: Theme.gap
        width: Math.min(implicitWidth, 170)
        height: parent.height
        text: line.name
    }

    PlainText {
        id: owner

        anchors.left: label.right
        anchors.leftMargin: Theme.gap
        width: Math.min(implicitWidth, 130)
        height: parent.height
        text: line.project
        color: Theme.textSecondary
    }

    PlainText {
        anchors.left: owner.right
        anchors.leftMargin: Theme.gap
        anchors.right: amount.left
        anchors.rightMargin: Theme.gap
        height: parent.height
        visible: pointer.hovered
        text: line.path
        elide: Text.ElideMiddle
        color: Theme.textTertiary
        font.pixelSize: Theme.metaSize
    }

    PlainText {
        id: amount

        anchors.right: move.left
        anchors.rightMargin: Theme.margin
        height: parent.height
        text: line.size
        color: Theme.textSecondary
        font.pixelSize: Theme.metaSize
    }

    TextButton {
        id: move

        anchors.right: parent.right
        anchors.rightMargin: Theme.gap
        anchors.verticalCenter: parent.verticalCenter
        width: 96
        enabled: !line.isMoving
        text: line.isMoving ? "Moving…" : "Move to Trash"
        onClicked: line.leftBehind.trash(line.path)
    }
}
