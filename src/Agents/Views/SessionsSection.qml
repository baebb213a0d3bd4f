pragma ComponentBehavior: Bound
import QtQuick
import Kippo

/// The section that lists the sessions.
Item {
    id: page

    required property AgentsViewModel agents

    function toggleCurrent() {
        if (list.currentItem)
            (list.currentItem as SessionDelegate).toggle();
    }

    /// The row that unfolds, or did last.
    property SessionDelegate unfoldingRow

    // Keeps it in sight while it unfolds and others fold up, its first line before its last. Between the list's layouts,
    // for in the middle of one a scrolled list would leave rows undrawn.
    FrameAnimation {
        running: unfolding.running
        onTriggered: {
            const row = page.unfoldingRow;
            if (!row || !row.isExpanded)
                return;
            if (row.y + row.height > list.contentY + list.height)
                list.contentY = row.y + row.height - list.height;
            if (row.y < list.contentY)
                list.contentY = row.y;
        }
    }

    Timer {
        id: unfolding

        interval: Motion.unfold + 200
    }

    Connections {
        target: page.agents

        function onExpandedIdChanged() {
            unfolding.restart();
        }

        function onBegunAnew() {
            list.currentIndex = -1;
            list.positionViewAtBeginning();
        }
    }

    ListView {
        id: list

        anchors.fill: parent
        clip: true
        boundsBehavior: Flickable.StopAtBounds
        model: page.agents.sessions
        delegate: SessionDelegate {
            id: row

            width: ListView.view.width
            agents: page.agents
            onIsExpandedChanged: if (isExpanded)
                page.unfoldingRow = row
        }
        bottomMargin: clear.visible ? clear.height : 0

        // No row is the keyboard's before somebody uses it.
        currentIndex: -1
        activeFocusOnTab: true
        focus: true
        keyNavigationEnabled: true
        Keys.onReturnPressed: page.toggleCurrent()
        Keys.onEnterPressed: page.toggleCurrent()
        Keys.onSpacePressed: page.toggleCurrent()
        Keys.onEscapePressed: event => {
            event.accepted = page.agents.expandedId !== "";
            page.agents.toggle(page.agents.expandedId);
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

    // Comes after the rows, also for the keyboard.
    Item {
        anchors.fill: parent
        clip: true

        Item {
            id: clear

            y: list.originY + list.contentHeight - list.contentY
            width: list.width
            height: Theme.controlHeight + 2 * Theme.gap
            visible: page.agents.clearText !== ""

            TextButton {
                id: clearButton

                anchors.right: parent.right
                anchors.rightMargin: Theme.gap
                anchors.verticalCenter: parent.verticalCenter
                text: page.agents.clearText
                help: "Take them off the list. They come back if their agents do something new."
                onClicked: page.agents.clearFinished()
            }

            PlainText {
                anchors.right: clearButton.left
                anchors.rightMargin: Theme.gap
                height: parent.height
                visible: clearButton.isActive
                text: clearButton.help
                color: Theme.textTertiary
                font.pixelSize: Theme.metaSize
            }
        }
    }

    FocusScroll {
        flickable: list
    }

    ScrollFade {
        flickable: list
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
