pragma ComponentBehavior: Bound
import QtQuick
import Kippo

/// What an expanded row adds: the whole of request and reply, what it does or did last, what it runs and costs, and what
/// can be done about it.
Item {
    id: details

    required property AgentsViewModel agents
    readonly property SessionDetail detail: agents.detail
    /// Of what the pointer or the keyboard is at.
    readonly property string help: {
        const at = [openFolder, copyId, dismiss, stop].find(button => button.isActive);
        return at ? at.help : "";
    }

    implicitHeight: running.y + running.height

    Column {
        id: facts

        width: parent.width
        spacing: 2

        Fact {
            width: parent.width
            label: "Request"
            text: details.detail.request
            lines: 4
        }

        Fact {
            width: parent.width
            label: "Reply"
            text: details.detail.reply
            lines: 5
        }

        Fact {
            width: parent.width
            label: details.detail.activityLabel
            text: details.detail.activity
            lines: 2
        }

        Item {
            width: parent.width
            height: Theme.lineHeight
            visible: folder.visible || today.visible

            Fact {
                id: folder

                width: today.x - Theme.margin
                label: "Folder"
                text: details.detail.folder
                elide: Text.ElideMiddle
            }

            PlainText {
                id: today

                anchors.right: parent.right
                height: parent.height
                visible: details.detail.usage !== ""
                text: visible ? details.detail.usage + " today" : ""
                color: Theme.textSecondary
            }
        }
    }

    PlainText {
        id: helpLine

        y: facts.height
        width: parent.width
        height: Theme.lineHeight
        text: details.help !== "" ? details.help : details.agents.problem
        color: details.help !== "" ? Theme.textTertiary : Theme.needsYou
        font.pixelSize: Theme.metaSize
        horizontalAlignment: dismiss.isActive || stop.isActive ? Text.AlignRight : Text.AlignLeft
    }

    Item {
        id: actions

        y: helpLine.y + helpLine.height
        width: parent.width
        height: Theme.controlHeight

        Row {
            spacing: Theme.unit + 2

            TextButton {
                id: openFolder

                visible: details.detail.folder !== ""
                text: "Open folder"
                help: "Show the session's folder in the file manager."
                onClicked: details.agents.openFolder()
            }

            TextButton {
                id: copyId

                text: "Copy session ID"
                help: "Put the session's ID on the clipboard, to resume it or to find its transcript."
                onClicked: details.agents.copySessionId()
            }
        }

        Row {
            anchors.right: parent.right
            spacing: Theme.unit + 2

            TextButton {
                id: dismiss

                text: "Dismiss"
                help: "Take it off the list. It comes back if the agent does something new."
                onClicked: details.agents.dismiss()
            }

            TextButton {
                id: stop

                visible: details.detail.canBeStopped
                text: details.detail.stopLabel
                help: "End the agent and everything that it started."
                tone: details.detail.isAskingToStop ? Theme.needsYou : Theme.textSecondary
                onClicked: details.agents.stop()
            }
        }
    }

    Column {
        id: running

        y: actions.y + actions.height + Theme.gap
        width: parent.width
        bottomPadding: Theme.gap
        spacing: 2

        Repeater {
            model: details.detail.processes

            ProcessLine {
                width: running.width
                onOpened: port => details.agents.openPort(port)
            }
        }

        Fact {
            width: parent.width
            label: ""
            text: details.detail.moreProcesses
            tone: Theme.textTertiary
        }

        Item {
            width: parent.width
            height: Theme.lineHeight
            visible: details.detail.ports.length > 0

            PlainText {
                height: parent.height
                text: "Ports"
                color: Theme.textTertiary
                font.pixelSize: Theme.metaSize
            }

            PortRow {
                x: Theme.labelWidth
                anchors.verticalCenter: parent.verticalCenter
                ports: details.detail.ports
                more: details.detail.morePorts
                onOpened: port => details.agents.openPort(port)
            }
        }
    }
}
