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
            bubble.part?.takeFocus();
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
        value: panel.mascot.speaks ? Qt.rect(bubble.x, bubble.restingY, bubble.width, bubble.height) : Qt.rect(0, 0, 0, 0)
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

    LaterPart {
        id: bubble

        readonly property MascotBubble part: item as MascotBubble
        readonly property real restingY: Math.round(panel.stage.shapeHeight) + Theme.gap

        x: Math.round((parent.width - width) / 2)
        y: restingY
        file: "MascotBubble.qml"
        properties: ({message: panel.mascot})
        isNeeded: panel.mascot.speaks
    }

    Item {
        id: body

        anchors.horizontalCenter: parent.horizontalCenter
        width: panel.stage.shapeWidth
        height: panel.stage.shapeHeight
        clip: true

        LaterPart {
            id: wing

            anchors.horizontalCenter: parent.horizontalCenter
            width: panel.stage.liveSize.width
            height: panel.stage.liveSize.height
            opacity: panel.stage.liveOpacity
            visible: opacity > 0
            file: "WingView.qml"
            properties: ({notch: panel.notch, focusTimer: panel.focusTimer, mascotStage: panel.mascotStage})
            isNeeded: opacity > 0
        }

        Binding {
            target: wing.item
            property: "mascotIsOut"
            value: bubble.part?.visible ?? false
        }

        LaterPart {
            id: peek

            anchors.horizontalCenter: parent.horizontalCenter
            width: panel.stage.peekSize.width
            height: panel.stage.peekSize.height
            opacity: panel.stage.peekOpacity
            visible: opacity > 0
            file: "PeekView.qml"
            properties: ({notch: panel.notch})
            isNeeded: opacity > 0
        }

        TapHandler {
            enabled: !panel.notch.isExpanded
            onTapped: panel.notch.open()
        }

        LaterPart {
            id: open

            function takeFocus(): void {
                (item as ExpandedView)?.takeFocus();
            }

            anchors.horizontalCenter: parent.horizontalCenter
            width: panel.stage.expandedSize.width
            height: panel.stage.expandedSize.height
            opacity: panel.stage.expandedOpacity
            visible: opacity > 0
            enabled: panel.notch.isExpanded
            onEnabledChanged: if (enabled) {
                make();
                if (panel.hasKeyboard)
                    takeFocus();
            }
            file: "ExpandedView.qml"
            properties: ({
                    stage: panel.stage,
                    notch: panel.notch,
                    agents: panel.agents,
                    leftBehind: panel.leftBehind,
                    usage: panel.usage,
                    focusTimer: panel.focusTimer,
                    stretch: panel.stretch,
                    mascotStage: panel.mascotStage
                })
            isNeeded: enabled || opacity > 0
        }
    }

    // The first picture is the shape alone; all that may come over it is ready soon after.
    Connections {
        id: firstPicture

        target: panel.Window.window

        function onFrameSwapped(): void {
            firstPicture.enabled = false;
            for (const part of [wing, peek, bubble, open])
                part.prepare();
        }
    }
}
