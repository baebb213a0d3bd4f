import QtQuick
import Kippo

/// What the closed notch shows and announces.
SettingsPage {
    id: page

    required property PreferencesViewModel preferences

    title: "Notch"
    drawing: Icon.Notch

    SettingsGroup {
        title: "While it is closed"

        SwitchRow {
            title: "Show what is going on"
            note: "The notch grows wings with a light for each session that works or needs you"
            isOn: page.preferences.showLiveActivity
            onSwitched: on => page.preferences.showLiveActivity = on
        }

        SwitchRow {
            title: "Announce agents"
            note: "The notch widens for a moment when a session needs you or is done"
            isOn: page.preferences.agentAlerts
            onSwitched: on => page.preferences.agentAlerts = on
        }
    }
}
