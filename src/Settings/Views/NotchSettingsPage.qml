import QtQuick
import Kippo

/// How the notch looks and what it shows.
SettingsPage {
    id: page

    required property PreferencesViewModel preferences

    title: "Notch"
    drawing: Icon.Notch

    SettingsGroup {
        title: "Look"

        SwatchRow {
            title: "Style"
            isWide: true
            choices: page.preferences.styles
            chosen: page.preferences.style
            onChose: value => page.preferences.style = value
        }

        SwatchRow {
            title: "Accent"
            choices: page.preferences.accents
            chosen: page.preferences.accent
            leadValue: "system"
            leadLabel: "As the desktop"
            leadColour: SettingsTheme.desktopAccent
            onChose: value => page.preferences.accent = value
        }
    }

    SettingsGroup {
        title: "While it is closed"

        SwitchRow {
            title: "Show what is going on"
            note: "The notch grows wings for agents at work and for the focus timer"
            isOn: page.preferences.showLiveActivity
            onSwitched: on => page.preferences.showLiveActivity = on
        }
    }

    SettingsGroup {
        title: "While it is open"

        SwitchRow {
            title: "Status lights"
            note: "A light beside what each agent does; its colour and its shape tell the status"
            isOn: page.preferences.statusLights
            onSwitched: on => page.preferences.statusLights = on
        }

        SwitchRow {
            title: "Focus page"
            note: "The timer and the stretches"
            isOn: page.preferences.showFocusTab
            onSwitched: on => page.preferences.showFocusTab = on
        }
    }

    SettingsGroup {
        title: "Behaviour"

        SwitchRow {
            title: "Step aside for full-screen windows"
            note: "For films and games. Otherwise the notch stays in sight above them"
            isOn: page.preferences.stepsAside
            onSwitched: on => page.preferences.stepsAside = on
        }

        SwitchRow {
            title: "Reduce motion"
            note: "The notch changes at once rather than moving"
            isOn: page.preferences.reducedMotion
            onSwitched: on => page.preferences.reducedMotion = on
        }
    }

    SettingsGroup {
        title: "Camera notch"

        SwitchRow {
            title: "The built-in display has one"
            note: "Kippo then leaves room for it. Otherwise it draws its own"
            isOn: page.preferences.hasCutout
            onSwitched: on => page.preferences.hasCutout = on
        }

        NumberRow {
            visible: page.preferences.hasCutout
            title: "Width"
            unit: "px"
            from: 40
            to: 480
            step: 2
            value: page.preferences.cutoutWidth
            onChanged: value => page.preferences.cutoutWidth = value
        }

        NumberRow {
            visible: page.preferences.hasCutout
            title: "Height"
            unit: "px"
            from: 24
            to: 32
            value: page.preferences.cutoutHeight
            onChanged: value => page.preferences.cutoutHeight = value
        }
    }
}
