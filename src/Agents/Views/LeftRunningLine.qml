import QtQuick
import Kippo

/// A process that goes on without its agent: what it is, where it was started, for how long it runs, and the way out.
Item {
    id: line

    required property LeftBehindViewModel leftBehind
    required property int pid
    required property string name
    required property string folder
    required property list<int> ports
    required property string morePorts
    required property string age
    required property string memory
    required property string stopLabel
    required property bool isAsking
    required property bool isStopping
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
        width: Math.min(implicitWidth, 190)
        height: parent.height
        text: line.name
    }

    PlainText {
        anchors.left: label.right
        anchors.leftMargin: Theme.gap
        anchors.right: portRow.left
        anchors.rightMargin: Theme.gap
        height: parent.height
        text: line.folder
        color: Theme.textTertiary
    }

    PortRow {
        id: portRow

        anchors.right: figures.left
        anchors.rightMargin: Theme.gap
        anchors.verticalCenter: parent.verticalCenter
        ports: line.ports
        more: line.morePorts
        onOpened: port => line.leftBehind.openPort(port)
    }

    Row {
        id: figures

        // Room for the longest that the actions can be, so that nothing moves between two clicks.
        anchors.right: parent.right
        anchors.rightMargin: 148
        height: parent.height

        PlainText {
            width: 76
            height: parent.height
            text: line.age
            color: Theme.textTertiary
            font.pixelSize: Theme.metaSize
            horizontalAlignment: Text.AlignRight
        }

        PlainText {
            width: 54
            height: parent.height
            text: line.memory
            color: Theme.textTertiary
            font.pixelSize: Theme.metaSize
            horizontalAlignment: Text.AlignRight
        }
    }

    Row {
        id: actions

        anchors.right: parent.right
        anchors.rightMargin: Theme.gap
        anchors.verticalCenter: parent.verticalCenter
        spacing: Theme.unit + 2

        TextButton {
            visible: !line.isAsking
            text: "Hide"
            help: "Leave processes of this name out from now on. The settings list what is hidden."
            onClicked: line.leftBehind.hide(line.pid)
        }

        TextButton {
            enabled: !line.isStopping
            text: line.isAsking || line.isStopping ? line.stopLabel : "Stop"
            help: line.stopLabel
            tone: line.isAsking ? Theme.needsYou : Theme.textSecondary
            Accessible.name: line.stopLabel
            onClicked: line.leftBehind.stop(line.pid)
        }
    }
}
