import QtQuick
import QtQuick.Templates as T
import Kippo

/// A setting that is on or off. It shows `isOn` and asks for a change by `switched`; where the change does not come
/// about, it goes on showing what is.
GroupRow {
    id: row

    required property string title
    property string note
    /// Why the change that was asked for did not come about.
    property string problem
    required property bool isOn
    property real indent: SettingsTheme.rowMargin

    signal switched(bool on)

    lineIndent: indent
    implicitHeight: button.implicitHeight
    opacity: enabled ? 1 : 0.45

    T.AbstractButton {
        id: button

        width: row.width
        implicitHeight: Math.max(44, words.implicitHeight + 22)
        hoverEnabled: true
        focusPolicy: Qt.StrongFocus
        Accessible.role: Accessible.CheckBox
        Accessible.name: row.title
        Accessible.description: row.note
        Accessible.checkable: true
        Accessible.checked: row.isOn
        Accessible.onToggleAction: row.switched(!row.isOn)
        Keys.onReturnPressed: clicked()
        onClicked: row.switched(!row.isOn)

        Column {
            id: words

            x: row.indent
            anchors.verticalCenter: parent.verticalCenter
            width: track.x - x - 16
            spacing: 2

            SettingsText {
                width: parent.width
                text: row.title
                Accessible.ignored: true
            }

            SettingsText {
                width: parent.width
                visible: text !== ""
                text: row.note
                color: SettingsTheme.textTertiary
                font.pixelSize: SettingsTheme.noteSize
                Accessible.ignored: true
            }

            SettingsText {
                width: parent.width
                visible: text !== ""
                text: row.problem
                color: SettingsTheme.warning
                font.pixelSize: SettingsTheme.noteSize
                Accessible.role: Accessible.AlertMessage
                Accessible.name: text
            }
        }

        Rectangle {
            id: track

            anchors.right: parent.right
            anchors.rightMargin: SettingsTheme.rowMargin
            anchors.verticalCenter: parent.verticalCenter
            width: 36
            height: 20
            radius: height / 2
            color: row.isOn ? SettingsTheme.accent : SettingsTheme.trackOff

            Rectangle {
                x: row.isOn ? parent.width - width - 2 : 2
                y: 2
                width: 16
                height: 16
                radius: 8
                color: "#ffffff"

                Behavior on x {
                    NumberAnimation { duration: Motion.touch; easing.type: Easing.OutCubic }
                }
            }

            FocusRing {
                shown: button.visualFocus
                radius: height / 2
            }
        }
    }
}
