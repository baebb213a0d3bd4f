pragma ComponentBehavior: Bound
import QtQuick
import Kippo

/// Connecting agents, and which of them are shown.
SettingsPage {
    id: page

    required property AgentSettingsViewModel agents

    title: "Agents"
    drawing: Icon.Agents
    intro: "Kippo sees the agents on this machine by itself. A connected agent also tells it at once when it needs you "
           + "or is done."
    notice: agents.installError
    onNoticeDismissed: agents.clearInstallError()

    SettingsGroup {
        title: "Connections"
        note: "Connecting adds Kippo's entries to the agent's own settings file and keeps the rest of it as it is."

        Repeater {
            model: page.agents.hookAgents

            HookAgentRow {
                id: hooked

                agents: page.agents
                onChangeAsked: connects => changeSheet.show(hooked.kind, hooked.title, connects)
                onGuideAsked: guideSheet.show(hooked.kind, hooked.title)
            }
        }
    }

    SettingsGroup {
        title: "Other agents"

        Repeater {
            model: page.agents.otherAgents

            PlainAgentRow {
                agents: page.agents
            }
        }
    }

    WatchedPrograms {
        agents: page.agents
    }

    SettingsGroup {
        title: "Hidden processes"
        note: "Left-running processes of these names stay off the agents' page."

        Repeater {
            model: page.agents.hiddenProcesses

            NameListRow {
                id: entry

                required property string storedName
                required property string shownName

                name: shownName

                PushButton {
                    text: "Show again"
                    spoken: "Show " + entry.shownName + " again"
                    onClicked: page.agents.unhideProcess(entry.storedName)
                }
            }
        }

        GroupRow {
            visible: page.agents.hiddenProcesses.isEmpty
            implicitHeight: 44

            SettingsText {
                x: SettingsTheme.rowMargin
                anchors.verticalCenter: parent.verticalCenter
                width: parent.width - 2 * x
                text: "None. A process can be hidden where the agents' page lists it."
                color: SettingsTheme.textTertiary
            }
        }
    }

    ChangeSheet {
        id: changeSheet

        objectName: "changeSheet"
        agents: page.agents
    }

    GuideSheet {
        id: guideSheet

        objectName: "guideSheet"
        agents: page.agents
    }
}
