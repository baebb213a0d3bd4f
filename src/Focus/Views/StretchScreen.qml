pragma ComponentBehavior: Bound
import QtQuick
import Kippo

/// One stretch after another: the figure that shows it, what to do, how far it is. Left and Right go back and on.
FocusScope {
    id: screen

    required property StretchViewModel stretch

    Keys.onLeftPressed: stretch.previous()
    Keys.onRightPressed: stretch.next()

    Binding {
        target: screen.stretch
        property: "shown"
        value: screen.visible
    }

    StretchFigure {
        id: figure

        x: Theme.margin
        y: Theme.gap
        width: 212
        height: 160
        stretch: screen.stretch
        reduced: Motion.reduced
    }

    Item {
        id: side

        anchors.left: figure.right
        anchors.leftMargin: Theme.margin
        anchors.right: parent.right
        anchors.rightMargin: Theme.margin
        y: Theme.margin + 2
        height: 144 - 4

        Row {
            id: bars

            readonly property real each: (width - spacing * (screen.stretch.count - 1)) / screen.stretch.count

            width: parent.width
            height: 4
            spacing: Theme.unit + 2

            Accessible.role: Accessible.ProgressBar
            Accessible.name: screen.stretch.spoken

            Repeater {
                model: screen.stretch.count

                Rectangle {
                    required property int index
                    readonly property bool isCurrent: index === screen.stretch.index && !screen.stretch.isFinished

                    width: bars.each
                    height: bars.height
                    radius: height / 2
                    color: Theme.bar

                    Rectangle {
                        width: parent.isCurrent ? Math.max(height, parent.width * screen.stretch.progress) : parent.width
                        height: parent.height
                        radius: parent.radius
                        visible: parent.index <= screen.stretch.index
                        color: Theme.resting
                    }
                }
            }
        }

        PlainText {
            id: title

            anchors.top: bars.bottom
            anchors.topMargin: Theme.gap
            width: Math.min(implicitWidth, parent.width - 120)
            height: 28
            text: screen.stretch.title
            font.pixelSize: Theme.headlineSize
            font.weight: Font.DemiBold
        }

        Rectangle {
            anchors.left: title.right
            anchors.leftMargin: Theme.gap + 2
            anchors.verticalCenter: title.verticalCenter
            width: sideName.implicitWidth + 2 * Theme.gap
            height: 20
            radius: height / 2
            visible: screen.stretch.side !== ""
            color: "transparent"
            border.color: Theme.resting

            PlainText {
                id: sideName

                anchors.centerIn: parent
                text: screen.stretch.side
                color: Theme.resting
                font.pixelSize: Theme.metaSize
                font.weight: Font.Medium
            }
        }

        PlainText {
            anchors.right: parent.right
            anchors.verticalCenter: title.verticalCenter
            visible: !screen.stretch.isFinished
            text: screen.stretch.left
            color: Theme.textTertiary
        }

        PlainText {
            anchors.top: title.bottom
            anchors.topMargin: 2
            width: parent.width
            text: screen.stretch.text
            color: Theme.textSecondary
            wrapMode: Text.Wrap
            maximumLineCount: 3
            lineHeight: 1.15
        }

        Row {
            anchors.bottom: parent.bottom
            spacing: Theme.gap

            FocusButton {
                focus: true
                isPrimary: true
                tint: Theme.resting
                text: screen.stretch.nextText
                onClicked: screen.stretch.isFinished ? screen.stretch.end() : screen.stretch.next()
            }

            FocusButton {
                text: "Previous"
                spoken: "Previous stretch"
                onClicked: screen.stretch.previous()
            }

            FocusButton {
                visible: !screen.stretch.isFinished
                text: "End"
                spoken: "End the stretches"
                onClicked: screen.stretch.end()
            }
        }
    }
}
