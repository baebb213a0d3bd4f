pragma ComponentBehavior: Bound
import QtQuick
import Kippo

/// One session: who and where, what it is doing, for how long, and what it costs the machine. A click unfolds the rest.
Item {
    id: row

    required property AgentsViewModel agents
    required property string sessionId
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
    readonly property bool isExpanded: agents.expandedId === sessionId
    /// The keyboard is at this row.
    readonly property bool hasKeyboard: ListView.isCurrentItem && ListView.view.activeFocus
    /// From 0, folded up, to 1.
    property real openness: isExpanded ? 1 : 0
    /// Of the details; stays known while they leave.
    property real detailsHeight: 0

    function toggle() {
        agents.toggle(sessionId);
    }

    height: Theme.rowHeight + Math.round(openness * detailsHeight)

    Accessible.role: Accessible.ListItem
    Accessible.name: spoken
    Accessible.checkable: true
    Accessible.checked: isExpanded
    Accessible.description: isExpanded ? "Expanded" : "Press to see more"
    Accessible.onPressAction: toggle()

    Behavior on openness {
        NumberAnimation { duration: Motion.unfold; easing.type: Easing.OutCubic }
    }

    Rectangle {
        anchors.fill: parent
        anchors.topMargin: 1
        anchors.bottomMargin: 1
        radius: Theme.corner
        color: Theme.hover
        border.color: Theme.focus
        border.width: row.hasKeyboard ? 1 : 0
        opacity: pointer.hovered || row.isExpanded || row.hasKeyboard ? 1 : 0

        Behavior on opacity {
            NumberAnimation { duration: Motion.touch }
        }
    }

    HoverHandler {
        id: pointer
    }

    MouseArea {
        width: parent.width
        height: Theme.rowHeight
        cursorShape: Qt.PointingHandCursor
        onClicked: row.toggle()
    }

    AgentBadge {
        id: badge

        x: Theme.gap
        y: (Theme.rowHeight - height) / 2
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
            opacity: 1 - row.openness
            text: row.request
            color: Theme.textTertiary
        }
    }

    StatusLight {
        id: light

        anchors.left: names.left
        anchors.verticalCenter: sentence.verticalCenter
        width: visible ? implicitWidth : 0
        visible: row.agents.hasLights
        status: row.status
    }

    PlainText {
        id: sentence

        anchors.left: light.right
        anchors.leftMargin: light.visible ? Theme.unit + 2 : 0
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

    Item {
        x: names.x
        y: Theme.rowHeight
        width: row.width - x - Theme.gap
        height: row.height - y
        clip: true

        Repeater {
            // The view model knows one session's details: those of a row that another one takes the place of are gone.
            model: row.isExpanded || (row.openness > 0 && row.agents.expandedId === "") ? 1 : 0

            SessionDetails {
                width: row.width - names.x - Theme.gap
                opacity: row.openness
                agents: row.agents
                onImplicitHeightChanged: row.detailsHeight = implicitHeight
            }
        }
    }
}
