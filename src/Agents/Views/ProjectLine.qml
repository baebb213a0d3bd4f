import QtQuick
import Kippo

/// What one project used today: its name and cost over a bar as long as its share.
Item {
    id: line

    required property string name
    required property string tokens
    required property string cost
    required property real share
    required property string spoken

    height: Theme.shortRowHeight

    Accessible.role: Accessible.ListItem
    Accessible.name: spoken

    PlainText {
        anchors.left: parent.left
        anchors.right: amount.left
        anchors.rightMargin: Theme.gap
        y: 2
        height: Theme.lineHeight
        text: line.name
    }

    PlainText {
        id: amount

        anchors.right: parent.right
        y: 2
        height: Theme.lineHeight
        text: pointer.hovered ? line.tokens : line.cost
        color: Theme.textSecondary
        font.pixelSize: Theme.metaSize
    }

    Rectangle {
        y: Theme.lineHeight + 4
        width: parent.width
        height: 3
        radius: 1.5
        color: Theme.chip

        Rectangle {
            width: Math.max(parent.height, parent.width * line.share)
            height: parent.height
            radius: parent.radius
            color: Theme.working
            opacity: 0.8
        }
    }

    HoverHandler {
        id: pointer
    }
}
