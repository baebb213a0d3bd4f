pragma ComponentBehavior: Bound
import QtQuick

/// Keys as they look on the keyboard.
Row {
    id: caps

    required property list<string> keys

    spacing: 4

    Repeater {
        model: caps.keys

        Rectangle {
            id: cap

            required property string modelData

            width: Math.max(24, letters.implicitWidth + 12)
            height: 22
            radius: 5
            color: SettingsTheme.control
            border.width: 1
            border.color: SettingsTheme.border

            SettingsText {
                id: letters

                anchors.centerIn: parent
                text: cap.modelData
                color: SettingsTheme.textSecondary
                font.pixelSize: 11
                font.weight: Font.Medium
                wrapMode: Text.NoWrap
                lineHeight: 1
                Accessible.ignored: true
            }
        }
    }
}
