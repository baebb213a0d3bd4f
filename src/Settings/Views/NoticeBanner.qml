import QtQuick
import Kippo

/// Something went wrong; the person can put the message away.
Rectangle {
    id: banner

    required property string text

    signal dismissed()

    width: parent ? parent.width : 0
    height: Math.max(44, words.implicitHeight + 24)
    radius: SettingsTheme.corner
    color: SettingsTheme.warningGround
    border.width: 1
    border.color: SettingsTheme.warningBorder
    Accessible.role: Accessible.AlertMessage
    Accessible.name: text

    Icon {
        x: 14
        y: 14
        name: Icon.Warning
        color: SettingsTheme.warning
    }

    SettingsText {
        id: words

        x: 42
        anchors.verticalCenter: parent.verticalCenter
        width: banner.width - x - 48
        text: banner.text
        Accessible.ignored: true
    }

    IconButton {
        anchors.right: parent.right
        anchors.rightMargin: 8
        y: 8
        spoken: "Dismiss the message"
        onClicked: banner.dismissed()
    }
}
