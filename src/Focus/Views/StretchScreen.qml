import QtQuick
import Kippo

/// One stretch after another: the figure that shows it, what to do, how far it is.
FocusScope {
    id: screen

    required property StretchViewModel stretch

    Binding {
        target: screen.stretch
        property: "shown"
        value: screen.visible
    }

    StretchFigure {
        id: figure

        x: Theme.margin
        y: Theme.gap
        width: 195
        height: 150
        stretch: screen.stretch
        reduced: Motion.reduced
    }

    Column {
        anchors.left: figure.right
        anchors.leftMargin: 2 * Theme.margin
        anchors.right: parent.right
        y: Theme.margin
        spacing: Theme.gap

        PlainText {
            text: screen.stretch.title
            font.pixelSize: 20
            font.weight: Font.DemiBold
        }

        PlainText {
            width: parent.width
            text: screen.stretch.text
            color: Theme.textSecondary
            maximumLineCount: 3
            wrapMode: Text.Wrap
        }

        Row {
            spacing: Theme.gap

            TextButton {
                text: "Previous stretch"
                onClicked: screen.stretch.previous()
            }

            TextButton {
                text: "Next"
                visible: !screen.stretch.isFinished
                onClicked: screen.stretch.next()
            }

            TextButton {
                text: "End"
                onClicked: screen.stretch.end()
            }
        }
    }
}
