pragma ComponentBehavior: Bound
import QtQuick
import Kippo

/// The welcome: one step after the other, and out of it at any time.
FocusScope {
    id: window

    required property Appearance appearance
    required property WelcomeViewModel welcome
    required property AgentSettingsViewModel agents
    required property LoginViewModel login
    required property HotKeysViewModel hotKeys
    required property PreferencesViewModel preferences
    required property FocusSettingsViewModel focusSettings
    property int step: 0
    readonly property list<WelcomeStep> steps: [hello, connecting, starting, ending]
    readonly property bool isLast: step === steps.length - 1

    function forward() {
        if (window.isLast)
            window.welcome.finish();
        else
            ++window.step;
    }

    focus: true
    Component.onCompleted: next.forceActiveFocus(Qt.OtherFocusReason)
    onStepChanged: next.forceActiveFocus(Qt.OtherFocusReason)

    AppearanceBindings {
        appearance: window.appearance
    }

    Shortcut {
        sequences: ["Escape", "Ctrl+W"]
        onActivated: window.welcome.finish()
    }

    Shortcut {
        sequences: ["Alt+Left"]
        enabled: window.step > 0
        onActivated: --window.step
    }

    Shortcut {
        sequences: ["Alt+Right"]
        enabled: !window.isLast
        onActivated: ++window.step
    }

    Connections {
        target: window.Window.window

        function onActiveChanged() {
            if (window.Window.active)
                window.agents.refresh();
        }
    }

    Rectangle {
        anchors.fill: parent
        color: SettingsTheme.window
    }

    Item {
        anchors.left: parent.left
        anchors.right: parent.right
        anchors.top: parent.top
        anchors.bottom: foot.top

        HelloStep {
            id: hello

            visible: window.step === 0
        }

        ConnectStep {
            id: connecting

            visible: window.step === 1
            welcome: window.welcome
            agents: window.agents
        }

        StartStep {
            id: starting

            visible: window.step === 2
            login: window.login
            focusSettings: window.focusSettings
        }

        EndStep {
            id: ending

            visible: window.step === 3
            preferences: window.preferences
            hotKeys: window.hotKeys
        }
    }

    Rectangle {
        id: foot

        anchors.bottom: parent.bottom
        width: parent.width
        height: 68
        color: SettingsTheme.sidebar

        Rectangle {
            width: parent.width
            height: 1
            color: SettingsTheme.hairline
        }

        PushButton {
            x: 24
            anchors.verticalCenter: parent.verticalCenter
            visible: window.step > 0
            text: "Back"
            onClicked: --window.step
        }

        Row {
            anchors.centerIn: parent
            spacing: 8
            Accessible.role: Accessible.StaticText
            Accessible.name: "Step " + (window.step + 1) + " of " + window.steps.length

            Repeater {
                model: window.steps.length

                Rectangle {
                    required property int index

                    width: index === window.step ? 20 : 7
                    height: 7
                    radius: 3.5
                    color: index === window.step ? SettingsTheme.accent : SettingsTheme.dot

                    Behavior on width {
                        NumberAnimation { duration: Motion.reveal; easing.type: Easing.OutCubic }
                    }
                }
            }
        }

        Row {
            anchors.right: parent.right
            anchors.rightMargin: 24
            anchors.verticalCenter: parent.verticalCenter
            spacing: 8

            PushButton {
                visible: !window.isLast
                isQuiet: true
                text: "Skip"
                spoken: "Skip the rest"
                onClicked: window.welcome.finish()
            }

            PushButton {
                id: next

                focus: true
                isProminent: true
                text: window.step === 0 ? "Get started" : window.isLast ? "Done" : "Continue"
                onClicked: window.forward()
            }
        }
    }
}
