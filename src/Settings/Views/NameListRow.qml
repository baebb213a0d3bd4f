import QtQuick

/// A name, and what can be done with it.
GroupRow {
    id: row

    required property string name
    property string note
    default property alias actions: actions.data

    implicitHeight: 44

    SettingsText {
        id: words

        x: SettingsTheme.rowMargin
        anchors.verticalCenter: parent.verticalCenter
        width: Math.min(implicitWidth, actions.x - x - 12)
        text: row.name
        wrapMode: Text.NoWrap
        elide: Text.ElideMiddle
    }

    SettingsText {
        anchors.left: words.right
        anchors.leftMargin: 8
        anchors.right: actions.left
        anchors.rightMargin: 12
        anchors.baseline: words.baseline
        text: row.note
        color: SettingsTheme.textTertiary
        font.pixelSize: SettingsTheme.noteSize
        wrapMode: Text.NoWrap
        elide: Text.ElideRight
    }

    Row {
        id: actions

        anchors.right: parent.right
        anchors.rightMargin: 8
        anchors.verticalCenter: parent.verticalCenter
        spacing: 4
    }
}
