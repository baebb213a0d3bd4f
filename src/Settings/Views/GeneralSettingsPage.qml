pragma ComponentBehavior: Bound
import QtQuick
import Kippo

/// Where the notch is and how it opens.
SettingsPage {
    id: page

    required property PreferencesViewModel preferences

    title: "General"
    drawing: Icon.Sliders

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
        title: "Behaviour"

        SwitchRow {
            title: "Open when the pointer rests on the notch"
            note: "Otherwise it opens with a click"
            isOn: page.preferences.openOnHover
            onSwitched: on => page.preferences.openOnHover = on
        }

        SwitchRow {
            title: "Reduce motion"
            note: "The notch changes at once rather than moving"
            isOn: page.preferences.reducedMotion
            onSwitched: on => page.preferences.reducedMotion = on
        }
    }
}
