pragma ComponentBehavior: Bound
import QtQuick
import Kippo

/// The page that lists the sessions.
Item {
    id: page

    required property AgentsViewModel agents

    ListView {
        id: list

        anchors.fill: parent
        clip: true
        boundsBehavior: Flickable.StopAtBounds
        model: page.agents.sessions
        delegate: SessionDelegate {
            width: ListView.view.width
        }

        Accessible.role: Accessible.List
        Accessible.name: "Agents"

        add: Transition {
            NumberAnimation { property: "opacity"; from: 0; to: 1; duration: Motion.reveal }
        }
        remove: Transition {
            NumberAnimation { property: "opacity"; to: 0; duration: Motion.conceal }
        }
        // A row that is moved while it still fades in must not stay half-way.
        displaced: Transition {
            NumberAnimation { property: "y"; duration: Motion.shift; easing.type: Easing.OutCubic }
            NumberAnimation { property: "opacity"; to: 1; duration: Motion.reveal }
        }
        move: Transition {
            NumberAnimation { property: "y"; duration: Motion.shift; easing.type: Easing.OutCubic }
            NumberAnimation { property: "opacity"; to: 1; duration: Motion.reveal }
        }
    }

    Rectangle {
        // The rounded corners are near.
        anchors.left: parent.left
        anchors.leftMargin: Theme.gap
        anchors.right: parent.right
        anchors.rightMargin: Theme.gap
        anchors.bottom: parent.bottom
        height: Theme.rowHeight / 2
        visible: !list.atYEnd
        gradient: Gradient {
            GradientStop { position: 0; color: "transparent" }
            GradientStop { position: 1; color: Theme.surface }
        }
    }

    ScrollHint {
        anchors.right: parent.right
        anchors.rightMargin: -Theme.unit - 2
        flickable: list
    }

    EmptySessions {
        anchors.centerIn: parent
        anchors.verticalCenterOffset: -Theme.gap
        visible: page.agents.isEmpty
    }
}
