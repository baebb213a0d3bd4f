import QtQuick
import Kippo

/// Everything inside the panel's window. The shape hangs from the middle of the top edge; contents keep their final
/// place while the shape moves over them, and are clipped to its body.
Item {
    id: panel

    required property NotchStage stage
    required property NotchViewModel notch
    required property AgentsViewModel agents
    required property LeftBehindViewModel leftBehind
    required property UsageViewModel usage

    Binding {
        target: Motion
        property: "reduced"
        value: panel.notch.reducedMotion
    }

    FrameAnimation {
        running: panel.stage.moving
        onTriggered: panel.stage.advance(frameTime)
    }

    NotchSilhouette {
        anchors.fill: parent
        stage: panel.stage
    }

    Item {
        id: body

        anchors.horizontalCenter: parent.horizontalCenter
        width: panel.stage.shapeWidth
        height: panel.stage.shapeHeight
        clip: true

        WingView {
            anchors.horizontalCenter: parent.horizontalCenter
            width: panel.stage.liveSize.width
            height: panel.stage.liveSize.height
            opacity: panel.stage.liveOpacity
            visible: opacity > 0
            notch: panel.notch
        }

        PeekView {
            anchors.horizontalCenter: parent.horizontalCenter
            width: panel.stage.peekSize.width
            height: panel.stage.peekSize.height
            opacity: panel.stage.peekOpacity
            visible: opacity > 0
            notch: panel.notch
        }

        TapHandler {
            enabled: !panel.notch.isExpanded
            onTapped: panel.notch.open()
        }

        ExpandedView {
            anchors.horizontalCenter: parent.horizontalCenter
            width: panel.stage.expandedSize.width
            height: panel.stage.expandedSize.height
            opacity: panel.stage.expandedOpacity
            visible: opacity > 0
            enabled: panel.notch.isExpanded
            shoulder: panel.stage.expandedShoulder
            notch: panel.notch
            agents: panel.agents
            leftBehind: panel.leftBehind
            usage: panel.usage
        }
    }
}
