import QtQuick

/// A small label on a quiet ground, such as a port.
Rectangle {
    id: chip

    required property string text

    implicitWidth: label.implicitWidth + 2 * Theme.unit + 2
    implicitHeight: Theme.chipHeight
    radius: Theme.unit + 1
    color: Theme.chip

    PlainText {
        id: label

        anchors.centerIn: parent
        text: chip.text
        color: Theme.textSecondary
        font.pixelSize: Theme.metaSize - 1
        font.weight: Font.Medium
    }
}
