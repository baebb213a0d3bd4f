pragma ComponentBehavior: Bound
import QtQuick
import Kippo

/// How long a focus lasts: usual lengths, and a step less or more. One stop for the keyboard, whose arrows step.
Rectangle {
    id: chooser

    required property FocusViewModel timer
    // What a screen reader asks of a spin box.
    readonly property int value: timer.minutes
    readonly property int minimumValue: 1
    readonly property int maximumValue: 180
    readonly property int stepSize: 5

    implicitWidth: choices.width + 4
    implicitHeight: 28
    radius: height / 2
    color: Theme.chip
    border.width: activeFocus ? 2 : 0
    border.color: Theme.focus
    activeFocusOnTab: true

    Accessible.role: Accessible.SpinBox
    Accessible.name: "Minutes of focus"
    Accessible.onIncreaseAction: timer.stepMinutes(1)
    Accessible.onDecreaseAction: timer.stepMinutes(-1)

    Keys.onUpPressed: timer.stepMinutes(1)
    Keys.onDownPressed: timer.stepMinutes(-1)

    component Choice: Rectangle {
        id: choice

        required property string text
        required property string spoken
        property bool isChosen: false

        signal clicked

        width: 34
        height: 24
        radius: height / 2
        color: isChosen ? Theme.controlHover : pointer.hovered ? Theme.control : "transparent"

        Accessible.role: Accessible.Button
        Accessible.name: spoken
        Accessible.onPressAction: clicked()

        HoverHandler {
            id: pointer

            cursorShape: Qt.PointingHandCursor
        }

        TapHandler {
            onTapped: choice.clicked()
        }

        PlainText {
            anchors.centerIn: parent
            text: choice.text
            color: choice.isChosen || pointer.hovered ? Theme.text : Theme.textSecondary
            font.weight: choice.isChosen ? Font.DemiBold : Font.Medium
        }
    }

    Row {
        id: choices

        x: 2
        anchors.verticalCenter: parent.verticalCenter

        Choice {
            text: "−"
            spoken: "Shorter"
            onClicked: chooser.timer.stepMinutes(-1)
        }

        Repeater {
            model: chooser.timer.presets

            Choice {
                required property int modelData

                text: modelData
                spoken: modelData + " minutes"
                isChosen: chooser.timer.minutes === modelData
                onClicked: chooser.timer.minutes = modelData
            }
        }

        Choice {
            text: "+"
            spoken: "Longer"
            onClicked: chooser.timer.stepMinutes(1)
        }
    }
}
