import QtQuick
import Kippo

/// Everything inside the panel's window. The shape hangs from the middle of the top edge; contents keep their final
/// place while the shape moves over them, and are clipped to its body. What the mascot says appears below the closed
/// shape.
FocusScope {
    id: panel

    required property NotchStage stage
    required property NotchViewModel notch
    required property AgentsViewModel agents
    required property LeftBehindViewModel leftBehind
    required property UsageViewModel usage
    required property FocusViewModel focusTimer
    required property StretchViewModel stretch
    required property MascotViewModel mascot
    required property MascotStageViewModel mascotStage
    required property Appearance appearance
    /// The window has the keyboard.
    readonly property bool hasKeyboard: Window.active

    /// Puts the keyboard where it is of use.
    function takeFocus(): void {
        if (mascot.speaks)
            bubble.takeFocus();
        else
            open.takeFocus();
    }

    focus: true
    // Without the keyboard nothing may look as if it had it.
    onHasKeyboardChanged: {
        if (hasKeyboard)
            takeFocus();
        else
            open.focus = bubble.focus = false;
    }

    Keys.onEscapePressed: notch.close()
    Keys.onPressed: event => {
        const turns = event.modifiers & Qt.ControlModifier;
        const isBack = event.key === Qt.Key_PageUp || event.key === Qt.Key_Backtab || (event.modifiers & Qt.ShiftModifier);
        const isTab = event.key === Qt.Key_Tab || event.key === Qt.Key_Backtab;
        const isPage = event.key === Qt.Key_PageUp || event.key === Qt.Key_PageDown;
        if (!notch.isExpanded || !turns || !(isTab || isPage))
            return;
        event.accepted = true;
        notch.turn(isBack ? -1 : 1);
        open.takeFocus();
    }

    Binding {
        target: Motion
        property: "reduced"
        value: panel.appearance.reducedMotion
    }

    Binding {
        target: Theme
        property: "surface"
        value: panel.appearance.surface
    }

    Binding {
        target: Theme
        property: "accent"
        value: panel.appearance.panelAccent
    }

    Binding {
        target: panel.stage
        property: "bubble"
        value: bubble.enabled ? Qt.rect(bubble.x, bubble.restingY, bubble.width, bubble.height) : Qt.rect(0, 0, 0, 0)
    }

    FrameAnimation {
        running: panel.stage.moving
        onTriggered: panel.stage.advance(frameTime)
    }

    NotchSilhouette {
        anchors.fill: parent
        stage: panel.stage
        color: Theme.surface
        // What is closed round a camera passes for a part of it.
        hasNotch: panel.notch.hasNotch
    }

    MascotBubble {
        id: bubble

        readonly property real restingY: Math.round(panel.stage.shapeHeight) + Theme.gap

        x: Math.round((parent.width - width) / 2)
        y: restingY
        message: panel.mascot
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
            focusTimer: panel.focusTimer
            mascotStage: panel.mascotStage
            mascotIsOut: bubble.visible
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
            id: open

            anchors.horizontalCenter: parent.horizontalCenter
            width: panel.stage.expandedSize.width
            height: panel.stage.expandedSize.height
            opacity: panel.stage.expandedOpacity
            visible: opacity > 0
            enabled: panel.notch.isExpanded
            onEnabledChanged: if (enabled && panel.hasKeyboard)
                takeFocus()
            shoulder: panel.stage.expandedShoulder
            notch: panel.notch
            agents: panel.agents
            leftBehind: panel.leftBehind
            usage: panel.usage
            focusTimer: panel.focusTimer
            stretch: panel.stretch
            mascotStage: panel.mascotStage
        }
    }
}
