import QtQuick
import Kippo

/// Gives a window of ours the look that the person chose.
Item {
    id: bindings

    required property Appearance appearance

    Binding {
        target: SettingsTheme
        property: "dark"
        value: bindings.appearance.isDark
    }

    Binding {
        target: SettingsTheme
        property: "accent"
        value: bindings.appearance.accent
    }

    Binding {
        target: SettingsTheme
        property: "accentInk"
        value: bindings.appearance.accentInk
    }

    Binding {
        target: SettingsTheme
        property: "accentText"
        value: bindings.appearance.accentText
    }

    Binding {
        target: SettingsTheme
        property: "desktopAccent"
        value: bindings.appearance.desktopAccent
    }

    Binding {
        target: Motion
        property: "reduced"
        value: bindings.appearance.reducedMotion
    }
}
