pragma ComponentBehavior: Bound
import QtQuick
import Kippo

/// The focus page: the timer, or the stretches while they run.
Item {
    id: page

    required property FocusViewModel focus
    required property StretchViewModel stretch

    StretchScreen {
        anchors.fill: parent
        visible: page.stretch.isOn
        stretch: page.stretch
    }

    FocusScope {
        anchors.fill: parent
        visible: !page.stretch.isOn

        FocusCountdown {
            id: countdown

            x: Theme.margin
            y: Theme.margin
            width: 132
            height: 132
            font.pixelSize: Theme.figureSize
            focus: page.focus
        }

        Column {
            anchors.left: countdown.right
            anchors.leftMargin: 2 * Theme.margin
            anchors.right: parent.right
            y: Theme.margin
            spacing: Theme.gap

            PlainText {
                text: page.focus.headline
                font.pixelSize: 20
                font.weight: Font.DemiBold
            }

            PlainText {
                text: page.focus.subline
                color: Theme.textSecondary
            }

            Row {
                spacing: Theme.gap

                TextButton {
                    text: page.focus.toggleText
                    onClicked: page.focus.toggle()
                }

                TextButton {
                    text: "Break"
                    visible: page.focus.isIdle
                    onClicked: page.focus.startBreak()
                }

                TextButton {
                    text: page.focus.skipText
                    visible: !page.focus.isIdle
                    onClicked: page.focus.skip()
                }

                TextButton {
                    text: "Reset"
                    visible: !page.focus.isIdle
                    onClicked: page.focus.reset()
                }

                TextButton {
                    text: "Stretch"
                    onClicked: page.stretch.begin()
                }
            }
        }
    }
}
