pragma ComponentBehavior: Bound
import QtQuick

/// A hot key: what it does, its keys, and why it does nothing where that is so.
GroupRow {
    id: row

    required property string title
    /// Strings, such as "Ctrl".
    required property var keys
    required property string trouble

    implicitHeight: 44
    Accessible.role: Accessible.StaticText
    Accessible.name: title + ": " + keys.join("+") + (trouble === "" ? "" : ", " + trouble)

    SettingsText {
        id: words

        x: SettingsTheme.rowMargin
        anchors.verticalCenter: parent.verticalCenter
        width: Math.min(implicitWidth, caps.x - x - 12)
        text: row.title
        wrapMode: Text.NoWrap
        elide: Text.ElideRight
        Accessible.ignored: true
    }

    SettingsText {
        anchors.left: words.right
        anchors.leftMargin: 12
        anchors.right: caps.left
        anchors.rightMargin: 12
        anchors.baseline: words.baseline
        horizontalAlignment: Text.AlignRight
        text: row.trouble
        color: SettingsTheme.waiting
        font.pixelSize: SettingsTheme.noteSize
        wrapMode: Text.NoWrap
        elide: Text.ElideRight
        Accessible.ignored: true
    }

    KeyCaps {
        id: caps

        anchors.right: parent.right
        anchors.rightMargin: SettingsTheme.rowMargin
        anchors.verticalCenter: parent.verticalCenter
        keys: row.keys
        opacity: row.trouble === "" ? 1 : 0.5
    }
}
