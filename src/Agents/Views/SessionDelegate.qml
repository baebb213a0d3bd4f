import QtQuick
import Kippo

/// One session: who and where, what it is doing, for how long, and what it costs the machine.
Item {
    id: row

    required property int kind
    required property int status
    required property string title
    required property string project
    required property string sentence
    required property string request
    required property string timeline
    required property string memory
    required property string cpu
    required property list<string> ports
    required property string spoken
    readonly property bool waits: status === AgentLook.Status.NeedsYou

    height: Theme.rowHeight

    Accessible.role: Accessible.ListItem
    Accessible.name: spoken

    Rectangle {
        anchors.fill: parent
        anchors.topMargin: 1
        anchors.bottomMargin: 1
        radius: Theme.corner
        color: Theme.hover
        opacity: pointer.hovered ? 1 : 0

        Behavior on opacity {
            NumberAnimation { duration: Motion.touch }
        }
    }

    HoverHandler {
        id: pointer
    }

    AgentBadge {
        id: badge

        x: Theme.gap
        anchors.verticalCenter: parent.verticalCenter
        width: Theme.badgeSize
        height: Theme.badgeSize
        kind: row.kind
    }

    Item {
        id: names

        anchors.left: badge.right
        anchors.leftMargin: Theme.gap + Theme.unit
        anchors.right: timeline.left
        anchors.rightMargin: Theme.margin
        y: 8
        height: 18

        PlainText {
            id: title

            width: Math.min(implicitWidth, names.width * 0.5)
            height: parent.height
            text: row.title
            font.pixelSize: Theme.titleSize
            font.weight: Font.DemiBold
        }

        PlainText {
            id: project

            anchors.left: title.right
            anchors.leftMargin: text === "" ? 0 : Theme.unit + 2
            width: Math.min(implicitWidth, names.width - title.width - anchors.leftMargin)
            height: parent.height
            text: row.project
            color: Theme.textSecondary
            font.pixelSize: Theme.titleSize
        }

        PlainText {
            anchors.left: project.right
            anchors.leftMargin: Theme.gap + 2
            anchors.right: parent.right
            height: parent.height
            visible: width > 60
            text: row.request
            color: Theme.textTertiary
        }
    }

    StatusLight {
        id: light

        anchors.left: names.left
        anchors.verticalCenter: sentence.verticalCenter
        status: row.status
    }

    PlainText {
        id: sentence

        anchors.left: light.right
        anchors.leftMargin: Theme.unit + 2
        anchors.right: meta.left
        anchors.rightMargin: Theme.margin
        y: 27
        height: 16
        text: row.sentence
        color: row.waits ? Theme.needsYou : Theme.textSecondary
    }

    PlainText {
        id: timeline

        anchors.right: parent.right
        anchors.rightMargin: Theme.gap
        y: 8
        height: 18
        text: row.timeline
        color: Theme.textTertiary
        font.pixelSize: Theme.metaSize
    }

    Row {
        id: meta

        anchors.right: parent.right
        anchors.rightMargin: Theme.gap
        anchors.verticalCenter: sentence.verticalCenter
        height: Theme.chipHeight
        spacing: Theme.gap

        Row {
            spacing: Theme.unit

            Repeater {
                model: row.ports

                Chip {
                    required property string modelData

                    text: modelData
                }
            }
        }

        PlainText {
            height: parent.height
            visible: row.memory !== ""
            text: row.memory
            color: Theme.textTertiary
            font.pixelSize: Theme.metaSize
        }

        PlainText {
            height: parent.height
            visible: row.cpu !== ""
            text: row.cpu
            color: Theme.textTertiary
            font.pixelSize: Theme.metaSize
            horizontalAlignment: Text.AlignRight
            width: 54
        }
    }
}
