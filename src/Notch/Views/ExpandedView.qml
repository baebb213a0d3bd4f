import QtQuick
import Kippo

/// The open panel: the page's sections and its summary on either side of the cut-out, the way to the settings, the page
/// below.
Item {
    id: expanded

    required property NotchViewModel notch
    required property AgentsViewModel agents
    required property LeftBehindViewModel leftBehind
    required property UsageViewModel usage
    /// How far the shoulders take the body in.
    required property real shoulder
    readonly property real inset: shoulder + Theme.margin

    Item {
        id: strip

        x: expanded.inset
        width: expanded.width - 2 * x
        height: expanded.notch.notchHeight

        SectionTabs {
            height: parent.height
            agents: expanded.agents
            leftBehind: expanded.leftBehind
        }

        Row {
            anchors.right: parent.right
            height: parent.height
            spacing: Theme.gap + Theme.unit

            StatusCount {
                status: AgentLook.Status.NeedsYou
                text: expanded.agents.needsYouText
            }

            StatusCount {
                status: AgentLook.Status.Working
                text: expanded.agents.workingText
            }

            StatusCount {
                status: AgentLook.Status.Idle
                text: expanded.agents.restText
            }

            Item {
                id: gear

                width: 22
                height: parent.height
                activeFocusOnTab: true
                Accessible.role: Accessible.Button
                Accessible.name: "Settings"
                Accessible.onPressAction: expanded.notch.openSettings()
                Keys.onReturnPressed: expanded.notch.openSettings()
                Keys.onSpacePressed: expanded.notch.openSettings()

                HoverHandler {
                    id: over
                }

                TapHandler {
                    onTapped: expanded.notch.openSettings()
                }

                Icon {
                    anchors.right: parent.right
                    anchors.verticalCenter: parent.verticalCenter
                    width: 15
                    height: 15
                    name: Icon.Gear
                    color: over.hovered || gear.activeFocus ? Theme.text : Theme.textTertiary
                }
            }
        }
    }

    AgentsPage {
        x: expanded.shoulder + Theme.gap
        y: strip.height
        width: expanded.width - 2 * x
        // Four rows fit exactly, clear of the rounded corners.
        height: expanded.height - y - 6
        agents: expanded.agents
        leftBehind: expanded.leftBehind
        usage: expanded.usage
    }
}
