pragma ComponentBehavior: Bound
import QtQuick
import Kippo

/// Both wings of the closed notch. While agents are at work: who at the left, how many at the right; those that need the
/// person go before those that work. A focus timer has its ring at the left and its time at the right, or, beside the
/// agents, the right wing for its time. At night, when nothing goes on, the mascot hangs in the right one and sleeps.
Item {
    id: wing

    required property NotchViewModel notch
    required property FocusViewModel focusTimer
    required property MascotStageViewModel mascotStage
    /// The mascot speaks beside the notch, so he cannot be here.
    property bool mascotIsOut: false
    readonly property real wingWidth: (width - notch.notchWidth) / 2
    /// The middle of what the concave shoulder leaves of a wing.
    readonly property real wingCenter: (wingWidth + Theme.shoulderReach) / 2
    readonly property bool showsAgents: notch.wing === NotchViewModel.AtWork
    readonly property bool showsFocus: notch.wing === NotchViewModel.InFocus
    /// Who the agents are has no room beside the focus timer.
    readonly property bool showsKinds: showsAgents && !notch.hasFocusBeside

    Accessible.role: Accessible.StatusBar
    Accessible.name: notch.liveSpoken

    component AgentCount: Row {
        readonly property bool waits: wing.notch.liveNeedsYou > 0

        spacing: 5

        StatusLight {
            anchors.verticalCenter: parent.verticalCenter
            status: parent.waits ? AgentLook.Status.NeedsYou : AgentLook.Status.Working
        }

        PlainText {
            text: parent.waits ? wing.notch.liveNeedsYou : wing.notch.liveWorking
            color: parent.waits ? Theme.needsYou : Theme.text
            font.pixelSize: Theme.titleSize
            font.weight: Font.DemiBold
        }
    }

    AgentBadge {
        visible: wing.showsKinds && wing.notch.liveIsOneKind
        x: Math.round(wing.wingCenter - width / 2)
        anchors.verticalCenter: parent.verticalCenter
        width: Theme.smallBadgeSize
        height: width
        kind: wing.notch.liveKind
    }

    Row {
        visible: wing.showsKinds && !wing.notch.liveIsOneKind
        x: Math.round(wing.wingCenter - width / 2)
        anchors.verticalCenter: parent.verticalCenter
        spacing: Theme.unit

        Repeater {
            model: wing.notch.lights

            StatusLight {
                required property var modelData

                width: Theme.lightSize - 1
                height: width
                status: modelData.status
                color: modelData.color
            }
        }
    }

    AgentCount {
        visible: wing.showsAgents
        x: Math.round((wing.notch.hasFocusBeside ? wing.wingCenter : wing.width - wing.wingCenter) - width / 2)
        anchors.verticalCenter: parent.verticalCenter
    }

    FocusCountdown {
        visible: wing.showsFocus
        x: Math.round(wing.wingCenter - width / 2)
        anchors.verticalCenter: parent.verticalCenter
        width: Theme.smallBadgeSize
        height: width
        timer: wing.focusTimer
        showsTime: false
        lingers: true
    }

    FocusCountdown {
        visible: wing.showsFocus || (wing.showsAgents && wing.notch.hasFocusBeside)
        x: Math.round(wing.width - wing.wingCenter - width / 2)
        anchors.verticalCenter: parent.verticalCenter
        timer: wing.focusTimer
        showsRing: false
        lingers: true
        font.pixelSize: Theme.metaSize
    }

    MascotItem {
        id: sleeper

        visible: wing.notch.wing === NotchViewModel.Asleep && wing.mascotStage.isInWing && !wing.mascotIsOut
        x: Math.round(wing.width - wing.wingCenter - width / 2)
        size: wing.height
        hangs: true
        state: wing.mascotStage.wingState
        reduced: Motion.reduced

        Component.onCompleted: restart(wing.mascotStage.wingAge())
    }

    Connections {
        target: wing.mascotStage

        function onWingBegun(): void {
            sleeper.restart(wing.mascotStage.wingAge());
        }
    }
}
