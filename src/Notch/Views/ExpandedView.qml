import QtQuick
import Kippo

/// The open panel: in the strip the pages at the left of the cut-out, the page's sections, the pin and the way to the
/// settings at its right; the page below; and the floor, where the mascot has one.
FocusScope {
    id: expanded

    required property NotchStage stage
    required property NotchViewModel notch
    required property AgentsViewModel agents
    required property LeftBehindViewModel leftBehind
    required property UsageViewModel usage
    required property FocusViewModel focusTimer
    required property StretchViewModel stretch
    required property MascotStageViewModel mascotStage
    /// How far the shoulders take the body in.
    readonly property real shoulder: stage.expandedShoulder
    readonly property real inset: shoulder + Theme.gap
    /// Of the strip, right of a camera or else of the page bar.
    readonly property real side: notch.hasNotch ? (width - notch.notchWidth) / 2 - inset - Theme.unit : strip.width - pages.width - 2 * Theme.margin
    readonly property bool showsAgents: notch.page === NotchViewModel.Agents
    readonly property bool showsFocus: notch.page === NotchViewModel.Focus

    /// Puts the keyboard on the page.
    function takeFocus(): void {
        if (showsFocus)
            focusPage.forceActiveFocus(Qt.TabFocusReason);
        else
            agentsPage.forceActiveFocus(Qt.TabFocusReason);
    }

    Item {
        id: strip

        x: expanded.inset
        width: expanded.width - 2 * x
        height: expanded.notch.notchHeight

        PageBar {
            id: pages

            height: parent.height
            notch: expanded.notch
            agents: expanded.agents
        }

        SectionTabs {
            anchors.right: buttons.left
            anchors.rightMargin: Theme.gap + 2
            height: parent.height
            visible: expanded.showsAgents
            room: expanded.side - buttons.width - anchors.rightMargin
            agents: expanded.agents
            leftBehind: expanded.leftBehind
        }

        Row {
            id: buttons

            anchors.right: parent.right
            height: parent.height

            StripButton {
                height: parent.height
                icon: Icon.Pin
                name: expanded.notch.isPinned ? "Let go" : "Keep open"
                isCheckable: true
                isChecked: expanded.notch.isPinned
                onClicked: expanded.notch.pin(!expanded.notch.isPinned)
            }

            StripButton {
                height: parent.height
                icon: Icon.Gear
                name: "Settings"
                onClicked: expanded.notch.openSettings()
            }
        }
    }

    Item {
        id: page

        x: expanded.shoulder + Theme.gap
        y: strip.height
        width: expanded.width - 2 * x
        // Four rows fit without a floor, clear of the rounded corners.
        height: expanded.height - y - (floor.visible ? floor.height : 6)

        AgentsPage {
            id: agentsPage

            anchors.fill: parent
            visible: expanded.showsAgents
            agents: expanded.agents
            leftBehind: expanded.leftBehind
            usage: expanded.usage
        }

        LaterPart {
            id: focusPage

            anchors.fill: parent
            visible: expanded.showsFocus
            file: "FocusPage.qml"
            properties: ({timer: expanded.focusTimer, stretch: expanded.stretch})
            isNeeded: expanded.showsFocus
        }
    }

    MascotFloor {
        id: floor

        x: expanded.shoulder + 2 * Theme.margin
        width: expanded.width - 2 * x
        height: 30
        anchors.bottom: parent.bottom
        visible: expanded.mascotStage.isRoaming
        stage: expanded.mascotStage
    }
}
