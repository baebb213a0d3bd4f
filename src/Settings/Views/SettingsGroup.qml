import QtQuick

/// Rows that belong together, on one card, under a heading.
Column {
    id: group

    property string title
    property string note
    default property alias rows: column.data

    width: parent ? parent.width : 0
    spacing: 8
    Accessible.role: Accessible.Grouping
    Accessible.name: title

    Column {
        x: 2
        width: parent.width - 4
        visible: group.title !== ""
        spacing: 2

        SettingsText {
            width: parent.width
            text: group.title
            font.pixelSize: SettingsTheme.headingSize
            font.weight: Font.DemiBold
            Accessible.role: Accessible.Heading
        }

        SettingsText {
            width: parent.width
            visible: text !== ""
            text: group.note
            color: SettingsTheme.textTertiary
            font.pixelSize: SettingsTheme.noteSize
        }
    }

    Rectangle {
        width: parent.width
        height: column.height + 2
        radius: SettingsTheme.corner
        color: SettingsTheme.card
        border.width: 1
        border.color: SettingsTheme.hairline

        Column {
            id: column

            x: 1
            y: 1
            width: parent.width - 2
        }
    }
}
