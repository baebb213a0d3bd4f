import QtQuick
import Kippo

/// How many sessions are in one status; nothing at all where there are none.
Row {
    id: count

    required property int status
    required property string text

    visible: text !== ""
    height: parent.height
    spacing: Theme.unit

    StatusLight {
        anchors.verticalCenter: parent.verticalCenter
        width: Theme.lightSize - 1
        height: width
        status: count.status
    }

    PlainText {
        height: parent.height
        text: count.text
        color: count.status === AgentLook.Status.NeedsYou ? Theme.needsYou : Theme.textSecondary
        font.pixelSize: Theme.metaSize
        font.weight: Font.Medium
    }
}
