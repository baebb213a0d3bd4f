pragma ComponentBehavior: Bound
import QtQuick
import QtQuick.Templates as T
import Kippo

/// The agents on this machine, to be connected one by one or all at once. Nothing happens unasked.
WelcomeStep {
    id: step

    required property WelcomeViewModel welcome
    required property AgentSettingsViewModel agents

    title: "Connect your agents"
    words: step.welcome.foundCount === 0
           ? "Kippo sees agents by itself. Once connected, they also tell it at once when they need you."
           : "Kippo sees them by itself. Connected, they also tell it at once when they need you. It adds its entries to "
             + "their settings and leaves the rest alone."

    Flickable {
        anchors.fill: parent
        contentWidth: width
        contentHeight: list.height + 24
        boundsBehavior: Flickable.StopAtBounds
        clip: true
        T.ScrollBar.vertical: ThinScrollBar {}

        Column {
            id: list

            width: parent.width
            spacing: 14

            NoticeBanner {
                visible: step.agents.installError !== ""
                text: step.agents.installError
                onDismissed: step.agents.clearInstallError()
            }

            SettingsGroup {
                visible: step.welcome.foundCount > 0

                Repeater {
                    model: step.welcome.found

                    HookAgentRow {
                        id: hooked

                        agents: step.agents
                        isBrief: true
                        onChangeAsked: connects => changeSheet.show(hooked.kind, hooked.title, connects)
                    }
                }
            }

            PushButton {
                anchors.horizontalCenter: parent.horizontalCenter
                visible: step.welcome.unconnected > 1
                text: "Connect all " + step.welcome.unconnected
                onClicked: step.welcome.connectAll()
            }

            SettingsText {
                width: parent.width
                visible: step.welcome.foundCount === 0
                horizontalAlignment: Text.AlignHCenter
                text: "None was found on this machine. When you have one, connect it in the settings."
                color: SettingsTheme.textTertiary
            }
        }
    }

    ChangeSheet {
        id: changeSheet

        objectName: "changeSheet"
        agents: step.agents
    }
}
