pragma ComponentBehavior: Bound
import QtQuick
import Kippo

/// The pages to choose from. Left and right turn to the next one.
Row {
    id: bar

    required property NotchViewModel notch
    required property AgentsViewModel agents
    /// Beyond so many there is room for icons only.
    readonly property bool hasNames: notch.pages.length <= 4

    function takeFocus(): void {
        for (let i = 0; i < tabs.count; ++i) {
            const tab = tabs.itemAt(i) as PageTab;
            if (tab.isShown)
                tab.forceActiveFocus(Qt.TabFocusReason);
        }
    }

    function turn(steps: int): void {
        notch.turn(steps);
        takeFocus();
    }

    spacing: 2

    Accessible.role: Accessible.PageTabList
    Accessible.name: "Pages"
    Keys.onLeftPressed: turn(-1)
    Keys.onRightPressed: turn(1)

    Repeater {
        id: tabs

        model: bar.notch.pages

        PageTab {
            id: tab

            required property var modelData
            readonly property bool isAgents: modelData.tab === NotchViewModel.Agents

            height: bar.height
            icon: modelData.icon
            name: modelData.name
            spoken: isAgents ? bar.agents.spoken : modelData.name
            isShown: bar.notch.page === modelData.tab
            hasName: isShown && bar.hasNames
            onChosen: bar.notch.show(modelData.tab)

            StatusCount {
                status: AgentLook.Status.NeedsYou
                text: tab.isAgents && bar.agents.needsYou > 0 ? bar.agents.needsYou : ""
            }

            StatusCount {
                status: AgentLook.Status.Working
                text: tab.isAgents && bar.agents.working > 0 ? bar.agents.working : ""
            }

            StatusCount {
                status: AgentLook.Status.Idle
                text: tab.isAgents && bar.agents.resting > 0 ? bar.agents.resting : ""
            }
        }
    }
}
