pragma ComponentBehavior: Bound
import QtQuick
import Kippo

/// Where the notch is, and how it opens.
WelcomeStep {
    id: step

    required property PreferencesViewModel preferences
    required property HotKeysViewModel hotKeys

    title: "The notch is up there"
    words: (step.preferences.openOnHover ? "Rest the pointer on it, and it opens." : "Click it, and it opens.")
           + " The gear in it leads to the settings, where all of this can be changed."

    picture: NotchPicture {
        anchors.horizontalCenter: parent ? parent.horizontalCenter : undefined
        width: 340
        height: 160
        notchWidth: 84
        notchHeight: 22
        wing: 30
        lightSize: 8
        saying: "2"
        Accessible.ignored: true

        Icon {
            anchors.horizontalCenter: parent.horizontalCenter
            y: 46
            width: 34
            height: 34
            rotation: -90
            name: Icon.Chevron
            color: "#ffffff"
        }
    }

    SettingsGroup {
        visible: step.preferences.hotKeysEnabled && !step.hotKeys.isUnsupported

        Repeater {
            model: step.hotKeys.lines

            HotKeyRow {
                required property var modelData

                title: modelData.title
                keys: modelData.keys
                trouble: modelData.trouble
            }
        }
    }
}
