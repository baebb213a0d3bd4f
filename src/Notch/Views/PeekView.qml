import QtQuick
import Kippo

/// An announcement: who, and that it is done or needs the person; below, where there is more to say, what about.
Item {
    id: peek

    required property NotchViewModel notch
    readonly property real side: (width - notch.notchWidth) / 2
    readonly property bool isTall: height > notch.notchHeight
    // Beside a camera every pixel counts.
    readonly property real inset: Theme.shoulderReach + (notch.hasNotch && !isTall ? Theme.unit + 1 : Theme.gap + 2)

    Accessible.role: Accessible.AlertMessage
    Accessible.name: notch.peekSpoken

    Item {
        id: strip

        width: parent.width
        height: peek.notch.notchHeight

        AgentBadge {
            id: badge

            x: peek.inset
            anchors.verticalCenter: parent.verticalCenter
            width: Theme.smallBadgeSize
            height: width
            kind: peek.notch.peekKind
        }

        PlainText {
            anchors.left: badge.right
            anchors.leftMargin: Theme.unit + 1
            width: (peek.notch.hasNotch ? peek.side - 2 : light.x - Theme.margin) - x
            height: parent.height
            text: peek.notch.peekTitle
            font.weight: Font.DemiBold
        }

        StatusLight {
            id: light

            anchors.right: word.left
            anchors.rightMargin: 6
            anchors.verticalCenter: parent.verticalCenter
            status: peek.notch.peekStatus
        }

        PlainText {
            id: word

            anchors.right: parent.right
            anchors.rightMargin: peek.inset
            height: parent.height
            text: peek.notch.peekWord
            color: Theme.statusColor(peek.notch.peekStatus)
            font.weight: Font.DemiBold
        }
    }

    PlainText {
        id: project

        x: peek.inset
        width: peek.width - 2 * x
        y: strip.height
        height: 16
        visible: peek.isTall
        text: peek.notch.peekProject
        font.weight: Font.Medium
    }

    PlainText {
        x: peek.inset
        width: peek.width - 2 * x
        y: project.y + project.height
        height: 16
        visible: project.visible
        text: peek.notch.peekSentence
        color: Theme.textSecondary
    }
}
