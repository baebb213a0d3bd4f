import QtQuick
import Kippo

/// The focus timer and the mascot.
SettingsPage {
    id: page

    required property FocusSettingsViewModel focusSettings

    title: "Focus & Kippo"
    drawing: Icon.Clock

    SettingsGroup {
        title: "Focus timer"
        note: "Every fourth focus earns a long break."

        NumberRow {
            title: "Focus"
            unit: "min"
            to: 180
            step: 5
            value: page.focusSettings.focusMinutes
            onChanged: value => page.focusSettings.focusMinutes = value
        }

        NumberRow {
            title: "Short break"
            unit: "min"
            to: 60
            value: page.focusSettings.shortBreakMinutes
            onChanged: value => page.focusSettings.shortBreakMinutes = value
        }

        NumberRow {
            title: "Long break"
            unit: "min"
            to: 120
            step: 5
            value: page.focusSettings.longBreakMinutes
            onChanged: value => page.focusSettings.longBreakMinutes = value
        }

        SwitchRow {
            title: "Start breaks by themselves"
            note: "Otherwise a break waits until you start it"
            isOn: page.focusSettings.autoStartBreaks
            onSwitched: on => page.focusSettings.autoStartBreaks = on
        }
    }

    SettingsGroup {
        title: "Kippo"
        note: "The bat who lives at the notch."

        SwitchRow {
            title: "Let Kippo speak up"
            note: "He suggests a focus after a while of work, and a break after a focus"
            isOn: page.focusSettings.mascotEnabled
            onSwitched: on => page.focusSettings.mascotEnabled = on
        }

        SwitchRow {
            title: "Let him roam"
            note: "He walks the floor of the open panel and cheers for your agents"
            enabled: page.focusSettings.mascotEnabled
            isOn: page.focusSettings.mascotRoams
            onSwitched: on => page.focusSettings.mascotRoams = on
        }

        SwitchRow {
            title: "Night owl"
            note: "After 23:00 he sleeps in the closed notch, and reminds you of your bed"
            enabled: page.focusSettings.mascotEnabled
            isOn: page.focusSettings.mascotNightOwl
            onSwitched: on => page.focusSettings.mascotNightOwl = on
        }

        GroupRow {
            implicitHeight: 72
            enabled: page.focusSettings.mascotEnabled
            opacity: enabled ? 1 : 0.45

            MascotItem {
                id: kippo

                anchors.horizontalCenter: parent.left
                anchors.horizontalCenterOffset: SettingsTheme.rowMargin + 22
                anchors.bottom: parent.bottom
                anchors.bottomMargin: 10
                size: 44
                reduced: true
                state: page.focusSettings.quiet === "" ? MascotItem.Idle : MascotItem.Sleep
                Accessible.ignored: true
            }

            SettingsText {
                x: SettingsTheme.rowMargin + 56
                anchors.verticalCenter: parent.verticalCenter
                width: silencer.x - x - 12
                text: page.focusSettings.quiet === "" ? "He speaks up when there is something to say."
                                                      : page.focusSettings.quiet
                color: SettingsTheme.textSecondary
            }

            PushButton {
                id: silencer

                anchors.right: parent.right
                anchors.rightMargin: SettingsTheme.rowMargin
                anchors.verticalCenter: parent.verticalCenter
                text: page.focusSettings.quiet === "" ? "Quiet for the rest of today" : "Let him speak again"
                onClicked: {
                    if (page.focusSettings.quiet === "")
                        page.focusSettings.keepQuiet();
                    else
                        page.focusSettings.speakAgain();
                }
            }
        }
    }
}
