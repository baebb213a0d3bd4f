import QtQuick
import Kippo

/// Whether Kippo is there from now on, and whether he speaks.
WelcomeStep {
    id: step

    required property LoginViewModel login
    required property FocusSettingsViewModel focusSettings

    title: "Shall I be there tomorrow?"
    words: "I take no place among your windows, and next to nothing of your machine."

    picture: MascotItem {
        anchors.horizontalCenter: parent ? parent.horizontalCenter : undefined
        size: 84
        reduced: Motion.reduced
        state: step.login.startsAtLogin ? MascotItem.Cheer : MascotItem.Idle
        Accessible.ignored: true
    }

    SettingsGroup {
        SwitchRow {
            title: "Start at login"
            note: "Kippo is there as soon as you are"
            problem: step.login.problem
            isOn: step.login.startsAtLogin
            onSwitched: on => step.login.setStartsAtLogin(on)
        }

        SwitchRow {
            title: "Let Kippo speak up"
            note: "Now and then he suggests a focus, a break or your bed. He can be told to be quiet"
            isOn: step.focusSettings.mascotEnabled
            onSwitched: on => step.focusSettings.mascotEnabled = on
        }
    }
}
