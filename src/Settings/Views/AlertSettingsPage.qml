pragma ComponentBehavior: Bound
import QtQuick
import Kippo

/// What is announced, and how it sounds.
SettingsPage {
    id: page

    required property PreferencesViewModel preferences
    required property SoundsViewModel sounds

    title: "Alerts & sounds"
    drawing: Icon.Bell

    SettingsGroup {
        title: "Agents"

        SwitchRow {
            title: "Announce agents"
            note: "The notch widens for a moment when a session needs you or is done"
            isOn: page.preferences.agentAlerts
            onSwitched: on => page.preferences.agentAlerts = on
        }

        SwitchRow {
            title: "With a sound"
            note: "A turn of less than 20 seconds is never announced when it is done"
            enabled: page.preferences.agentAlerts
            isOn: page.preferences.agentSound
            onSwitched: on => page.preferences.agentSound = on
        }
    }

    SettingsGroup {
        title: "The sounds"
        note: "They are as loud as the desktop’s system sounds."

        Repeater {
            model: page.sounds.agentSounds

            SoundRow {
                required property var modelData

                title: modelData.title
                name: modelData.name
                onPlayed: page.sounds.play(modelData.sound)
            }
        }

        Repeater {
            model: page.sounds.focusSounds

            SoundRow {
                required property var modelData

                title: modelData.title
                name: modelData.name
                onPlayed: page.sounds.play(modelData.sound)
            }
        }
    }
}
