pragma ComponentBehavior: Bound
import QtQuick
import Kippo

/// What is left of the phase, as a ring, as a time, or as a time within a ring. Moves once a second, and only while it
/// is seen; digits keep their places.
Item {
    id: countdown

    required property FocusViewModel timer
    property bool showsRing: true
    property bool showsTime: true
    /// Stays as it was when the timer falls idle, so that it can fade out.
    property alias lingers: clock.lingers
    property alias font: measure.font
    /// How far the time stands above the middle.
    property real rise: 0
    property real thickness: Math.max(2, Math.round(height / 18))
    readonly property color tint: clock.isPaused ? Theme.textSecondary : clock.phase === FocusViewModel.ShortBreak || clock.phase === FocusViewModel.LongBreak ? Theme.resting : Theme.focusing

    implicitWidth: showsRing ? height : digits.width
    implicitHeight: digits.height

    Accessible.role: Accessible.Clock
    Accessible.name: clock.text

    FocusClock {
        id: clock

        focus: countdown.timer
        shown: countdown.visible
    }

    FontMetrics {
        id: measure

        font.family: Theme.family
        font.pixelSize: Theme.titleSize
        font.weight: Font.DemiBold
    }

    CountdownRing {
        anchors.centerIn: parent
        width: Math.min(countdown.width, countdown.height)
        height: width
        visible: countdown.showsRing
        thickness: countdown.thickness
        progress: clock.progress
        color: countdown.tint
        opacity: clock.phase === FocusViewModel.Idle ? 0.45 : 1
        track: Theme.control
    }

    Row {
        id: digits

        anchors.centerIn: parent
        anchors.verticalCenterOffset: -countdown.rise
        visible: countdown.showsTime

        Repeater {
            model: clock.text.length

            PlainText {
                required property int index

                width: text === ":" ? implicitWidth : measure.advanceWidth("0")
                horizontalAlignment: Text.AlignHCenter
                text: clock.text.charAt(index)
                font: measure.font
            }
        }
    }
}
