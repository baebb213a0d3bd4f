pragma ComponentBehavior: Bound
import QtQuick
import Kippo

/// The rounds up to the long break: those that are done, the one that runs, and those to come.
Row {
    id: dots

    required property FocusViewModel timer
    readonly property bool runs: timer.phase === FocusViewModel.Focus

    spacing: 5

    Accessible.role: Accessible.Indicator
    Accessible.name: timer.roundsSpoken

    Repeater {
        model: dots.timer.rounds

        Rectangle {
            required property int index
            readonly property bool isDone: index < dots.timer.roundsDone
            readonly property bool isCurrent: dots.runs && index === dots.timer.roundsDone

            width: 8
            height: 8
            radius: 4
            color: isDone ? Theme.focusing : isCurrent ? "transparent" : Theme.bar
            border.width: isCurrent ? 2 : 0
            border.color: Theme.focusing
        }
    }
}
