import QtQuick
import Kippo

/// One process that a session runs: its name, its ports, what it costs.
Item {
    id: line

    required property int index
    required property string name
    required property list<int> ports
    required property string morePorts
    required property string memory
    required property string cpu
    required property string spoken

    signal opened(int port)

    height: Theme.lineHeight

    Accessible.role: Accessible.StaticText
    Accessible.name: spoken

    PlainText {
        height: parent.height
        visible: line.index === 0
        text: "Runs"
        color: Theme.textTertiary
        font.pixelSize: Theme.metaSize
    }

    PlainText {
        id: label

        x: Theme.labelWidth
        height: parent.height
        width: Math.min(implicitWidth, figures.x - x - portRow.width - 2 * Theme.gap)
        text: line.name
        color: Theme.textSecondary
    }

    PortRow {
        id: portRow

        anchors.left: label.right
        anchors.leftMargin: Theme.gap
        anchors.verticalCenter: parent.verticalCenter
        ports: line.ports
        more: line.morePorts
        onOpened: port => line.opened(port)
    }

    Row {
        id: figures

        anchors.right: parent.right
        height: parent.height
        spacing: Theme.gap

        PlainText {
            height: parent.height
            text: line.memory
            color: Theme.textTertiary
            font.pixelSize: Theme.metaSize
        }

        PlainText {
            width: 54
            height: parent.height
            text: line.cpu
            color: Theme.textTertiary
            font.pixelSize: Theme.metaSize
            horizontalAlignment: Text.AlignRight
        }
    }
}
