pragma ComponentBehavior: Bound
import QtQuick
import Kippo

/// How Kippo starts, where it is and how it opens.
SettingsPage {
    id: page

    required property PreferencesViewModel preferences
    required property LoginViewModel login
    required property HotKeysViewModel hotKeys

    title: "General"
    drawing: Icon.Sliders

    SettingsGroup {
        title: "Start"

        SwitchRow {
            title: "Start at login"
            note: "Kippo is there as soon as you are"
            problem: page.login.problem
            isOn: page.login.startsAtLogin
            onSwitched: on => page.login.setStartsAtLogin(on)
        }

        SwitchRow {
            title: "Show Kippo in the tray"
            note: "Its menu opens the pages and these settings. Without it, the gear in the panel or starting Kippo again "
                  + "leads here"
            isOn: page.preferences.showMenuBarIcon
            onSwitched: on => page.preferences.showMenuBarIcon = on
        }
    }

    SettingsGroup {
        title: "Display"
        note: "While the chosen display is not connected, the notch is on the main one."

        Repeater {
            model: page.preferences.displays

            ChoiceRow {
                id: choice

                required property var modelData

                title: choice.modelData.label
                isChosen: page.preferences.display === choice.modelData.value
                onChosen: page.preferences.display = choice.modelData.value
            }
        }
    }

    SettingsGroup {
        title: "Opening"

        SwitchRow {
            title: "Open when the pointer rests on the notch"
            note: "Otherwise it opens with a click"
            isOn: page.preferences.openOnHover
            onSwitched: on => page.preferences.openOnHover = on
        }
    }

    SettingsGroup {
        title: "Hot keys"
        note: page.hotKeys.isUnsupported
              ? "This desktop lets no program take keys for itself. Its own settings can bind a key to a command, such as "
                + "“kippo open agents” or “kippo focus toggle”."
              : "They work in every program."

        SwitchRow {
            title: "Use hot keys"
            isOn: page.preferences.hotKeysEnabled
            onSwitched: on => page.preferences.hotKeysEnabled = on
        }

        Repeater {
            model: page.hotKeys.lines

            HotKeyRow {
                required property var modelData

                title: modelData.title
                keys: modelData.keys
                trouble: modelData.trouble
                enabled: page.preferences.hotKeysEnabled
                opacity: enabled ? 1 : 0.45
            }
        }
    }
}
