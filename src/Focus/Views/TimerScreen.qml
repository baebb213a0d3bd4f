import QtQuick
import Kippo

/// The timer: what is left at the left; beside it how the day goes, the minutes to choose, the buttons. Space starts and
/// pauses, Left and Right change the minutes.
FocusScope {
    id: screen

    required property FocusViewModel timer
    readonly property color tint: timer.isBreak ? Theme.resting : Theme.focusing

    /// The person wants to stretch.
    signal stretch

    Keys.onSpacePressed: timer.toggle()
    Keys.onLeftPressed: step(-1)
    Keys.onRightPressed: step(1)

    function step(steps: int): void {
        if (timer.isIdle)
            timer.stepMinutes(steps);
    }

    FocusCountdown {
        id: countdown

        x: Theme.margin + Theme.gap
        y: Theme.margin
        width: 144
        height: 144
        font.pixelSize: Theme.clockSize
        thickness: 8
        rise: note.visible ? 6 : 0
        timer: screen.timer
    }

    PlainText {
        id: note

        anchors.horizontalCenter: countdown.horizontalCenter
        y: countdown.y + countdown.height / 2 + 14
        visible: text !== ""
        text: screen.timer.note
        color: Theme.textTertiary
        font.pixelSize: Theme.metaSize
        font.weight: Font.Medium
    }

    Item {
        anchors.left: countdown.right
        anchors.leftMargin: 2 * Theme.margin
        anchors.right: parent.right
        anchors.rightMargin: Theme.margin
        y: countdown.y + 2
        height: countdown.height - 4

        PlainText {
            id: headline

            width: parent.width
            height: 26
            text: screen.timer.headline
            font.pixelSize: Theme.headlineSize
            font.weight: Font.DemiBold
        }

        RoundDots {
            id: dots

            anchors.verticalCenter: subline.verticalCenter
            timer: screen.timer
        }

        PlainText {
            id: subline

            anchors.left: dots.right
            anchors.leftMargin: Theme.gap + 2
            anchors.right: parent.right
            anchors.top: headline.bottom
            height: Theme.lineHeight + 4
            text: screen.timer.subline
            color: Theme.textSecondary
        }

        PlainText {
            width: parent.width
            y: 66
            height: chooser.height
            visible: !chooser.visible
            text: screen.timer.upNext
            color: Theme.textTertiary
        }

        MinutesChooser {
            id: chooser

            y: 66
            visible: screen.timer.isIdle
            timer: screen.timer
        }

        Row {
            anchors.bottom: parent.bottom
            spacing: Theme.gap

            FocusButton {
                focus: true
                isPrimary: true
                tint: screen.tint
                text: screen.timer.toggleText
                spoken: screen.timer.toggleSpoken
                onClicked: screen.timer.toggle()
            }

            FocusButton {
                visible: screen.timer.isIdle
                text: "Break"
                help: "Starts the break that is due"
                onClicked: screen.timer.startBreak()
            }

            FocusButton {
                visible: screen.timer.isIdle || screen.timer.isBreak
                text: "Stretch"
                help: "Five stretches, half a minute each"
                onClicked: screen.stretch()
            }

            FocusButton {
                visible: !screen.timer.isIdle
                text: screen.timer.skipText
                help: screen.timer.skipHelp
                onClicked: screen.timer.skip()
            }

            FocusButton {
                visible: !screen.timer.isIdle
                text: "Reset"
                help: screen.timer.resetHelp
                onClicked: screen.timer.reset()
            }
        }
    }
}
