pragma ComponentBehavior: Bound
import QtQuick
import Kippo

/// Both wings of the closed notch while agents are at work: who at the left, how many at the right. Those that need the
/// person go before those that work.
Item {
    id: wing

    required property NotchViewModel notch
    readonly property real wingWidth: (width - notch.notchWidth) / 2
    /// The middle of what the concave shoulder leaves of a wing.
    readonly property real wingCenter: (wingWidth + Theme.shoulderReach) / 2
    readonly property bool waits: notch.liveNeedsYou > 0
    readonly property bool isAwake: !notch.isAsleep

    Accessible.role: Accessible.StatusBar
    Accessible.name: notch.liveSpoken

    AgentBadge {
        visible: wing.isAwake && wing.notch.liveIsOneKind
        x: Math.round(wing.wingCenter - width / 2)
        anchors.verticalCenter: parent.verticalCenter
        width: Theme.smallBadgeSize
        height: width
        kind: wing.notch.liveKind
    }

    Row {
        visible: wing.isAwake && !wing.notch.liveIsOneKind
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

    Row {
        visible: wing.isAwake
        x: Math.round(wing.width - wing.wingCenter - width / 2)
        anchors.verticalCenter: parent.verticalCenter
        spacing: 5

        StatusLight {
            anchors.verticalCenter: parent.verticalCenter
            status: wing.waits ? AgentLook.Status.NeedsYou : AgentLook.Status.Working
        }

        PlainText {
            text: wing.waits ? wing.notch.liveNeedsYou : wing.notch.liveWorking
            color: wing.waits ? Theme.needsYou : Theme.text
            font.pixelSize: Theme.titleSize
            font.weight: Font.DemiBold
        }
    }

    PlainText {
        visible: wing.notch.isAsleep
        x: Math.round(wing.width - wing.wingCenter - width / 2)
        height: parent.height
        text: "z z"
        color: Theme.textTertiary
        font.pixelSize: Theme.metaSize
        font.weight: Font.DemiBold
    }
}
