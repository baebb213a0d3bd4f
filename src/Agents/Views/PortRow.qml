pragma ComponentBehavior: Bound
import QtQuick
import Kippo

/// Ports side by side, and how many more there are.
Row {
    id: row

    required property list<int> ports
    required property string more

    signal opened(int port)

    spacing: Theme.unit

    Repeater {
        model: row.ports

        PortChip {
            required property int modelData

            port: modelData
            onClicked: row.opened(port)
        }
    }

    PlainText {
        height: Theme.chipHeight
        visible: text !== ""
        text: row.more
        color: Theme.textTertiary
        font.pixelSize: Theme.metaSize
    }
}
