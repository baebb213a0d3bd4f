pragma ComponentBehavior: Bound
import QtQuick
import Kippo

/// The agents' page: the sessions, or what a click on another section's name shows in their place.
Item {
    id: page

    required property AgentsViewModel agents
    required property LeftBehindViewModel leftBehind
    required property UsageViewModel usage

    SessionsSection {
        anchors.fill: parent
        visible: page.agents.section === AgentsViewModel.Sessions
        agents: page.agents
    }

    Repeater {
        model: page.agents.section === AgentsViewModel.Usage ? 1 : 0

        UsageSection {
            width: page.width
            height: page.height
            usage: page.usage
        }
    }

    Repeater {
        model: page.agents.section === AgentsViewModel.LeftBehind ? 1 : 0

        LeftBehindSection {
            width: page.width
            height: page.height
            leftBehind: page.leftBehind
        }
    }
}
