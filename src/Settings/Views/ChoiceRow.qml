import QtQuick
import QtQuick.Templates as T

/// One of several choices, with a radio mark.
GroupRow {
    id: row

    required property string title
    required property bool isChosen

    signal chosen()

    implicitHeight: 40

    T.AbstractButton {
        id: button

        anchors.fill: parent
        focusPolicy: Qt.StrongFocus
        Accessible.role: Accessible.RadioButton
        Accessible.name: row.title
        Accessible.checkable: true
        Accessible.checked: row.isChosen
        Keys.onReturnPressed: clicked()
        onClicked: row.chosen()

        Rectangle {
            id: mark

            x: SettingsTheme.rowMargin
            anchors.verticalCenter: parent.verticalCenter
            width: 18
            height: 18
            radius: 9
            color: row.isChosen ? SettingsTheme.accent : SettingsTheme.field
            border.width: row.isChosen ? 0 : 1.5
            border.color: SettingsTheme.trackOff

            Rectangle {
                anchors.centerIn: parent
                width: 7
                height: 7
                radius: 3.5
                visible: row.isChosen
                color: SettingsTheme.accentInk
            }

            FocusRing {
                shown: button.visualFocus
                radius: height / 2
            }
        }

        SettingsText {
            anchors.left: mark.right
            anchors.leftMargin: 10
            anchors.right: parent.right
            anchors.rightMargin: SettingsTheme.rowMargin
            anchors.verticalCenter: parent.verticalCenter
            text: row.title
            wrapMode: Text.NoWrap
            elide: Text.ElideRight
            Accessible.ignored: true
        }
    }
}
