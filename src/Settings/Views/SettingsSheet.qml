import QtQuick
import QtQuick.Templates as T

/// A sheet over the window, for one thing to read or to decide; Escape and a click beside it close it.
T.Popup {
    id: sheet

    required property string title
    property string subtitle
    default property alias body: body.data
    property alias buttons: buttons.data
    /// How high the body would like to be; it scrolls what does not fit.
    property real bodyHeight: body.childrenRect.height

    parent: T.Overlay.overlay
    anchors.centerIn: parent
    width: Math.min(600, (parent ? parent.width : 600) - 48)
    height: Math.min(top.height + bodyHeight + bottom.height, (parent ? parent.height : 480) - 48)
    modal: true
    focus: true
    padding: 0
    closePolicy: T.Popup.CloseOnEscape | T.Popup.CloseOnPressOutside
    T.Overlay.modal: Rectangle { color: SettingsTheme.dim }

    background: Rectangle {
        radius: 14
        color: SettingsTheme.sheet
        border.width: 1
        border.color: SettingsTheme.border
    }

    FocusScope {
        anchors.fill: parent
        focus: true
        Accessible.role: Accessible.Dialog
        Accessible.name: sheet.title

        Item {
            id: top

            width: parent.width
            height: words.height + 34

            Column {
                id: words

                x: 22
                y: 20
                width: parent.width - 2 * x - 32
                spacing: 3

                SettingsText {
                    width: parent.width
                    text: sheet.title
                    font.pixelSize: 16
                    font.weight: Font.DemiBold
                    Accessible.role: Accessible.Heading
                }

                SettingsText {
                    width: parent.width
                    visible: text !== ""
                    text: sheet.subtitle
                    color: SettingsTheme.textSecondary
                    font.pixelSize: SettingsTheme.noteSize
                }
            }

            IconButton {
                anchors.right: parent.right
                anchors.rightMargin: 14
                y: 14
                spoken: "Close"
                onClicked: sheet.close()
            }
        }

        Item {
            id: body

            anchors.top: top.bottom
            anchors.bottom: bottom.top
            width: parent.width
        }

        Item {
            id: bottom

            anchors.bottom: parent.bottom
            width: parent.width
            height: 60

            Row {
                id: buttons

                anchors.right: parent.right
                anchors.rightMargin: 22
                anchors.verticalCenter: parent.verticalCenter
                spacing: 8
            }
        }
    }
}
