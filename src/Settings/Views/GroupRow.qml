import QtQuick

/// The ground of one row in a group: a hairline parts it from the row above.
Item {
    id: row

    property real lineIndent: SettingsTheme.rowMargin

    width: parent ? parent.width : 0

    Rectangle {
        x: row.lineIndent
        width: row.width - x
        height: 1
        // Not by `visible`: the software renderer would forget to paint a line that appears.
        color: row.y > 0 ? SettingsTheme.hairline : "transparent"
    }
}
