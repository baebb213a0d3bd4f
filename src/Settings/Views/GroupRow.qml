import QtQuick

/// The ground of one row in a group: a hairline parts it from the row above.
Item {
    id: row

    property real lineIndent: SettingsTheme.rowMargin

    width: parent ? parent.width : 0

    Rectangle {
        visible: row.y > 0
        x: row.lineIndent
        width: row.width - x
        height: 1
        color: SettingsTheme.hairline
    }
}
