import QtQuick
import Kippo

/// A sound, when it is heard, and a button to hear it now.
GroupRow {
    id: row

    required property string title
    required property string name

    signal played()

    implicitHeight: 44

    SettingsText {
        x: SettingsTheme.rowMargin
        anchors.verticalCenter: parent.verticalCenter
        width: label.x - x - 12
        text: row.title
        wrapMode: Text.NoWrap
        elide: Text.ElideRight
    }

    SettingsText {
        id: label

        anchors.right: player.left
        anchors.rightMargin: 4
        anchors.verticalCenter: parent.verticalCenter
        text: row.name
        color: SettingsTheme.textTertiary
        wrapMode: Text.NoWrap
    }

    IconButton {
        id: player

        anchors.right: parent.right
        anchors.rightMargin: 8
        anchors.verticalCenter: parent.verticalCenter
        drawing: Icon.Play
        spoken: "Play " + row.name
        onClicked: row.played()
    }
}
