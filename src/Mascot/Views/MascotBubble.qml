import QtQuick
import Kippo

/// The mascot beside what he says, with its answers. As large as the message needs: the panel takes its hit rectangle
/// from the implicit size.
FocusScope {
    id: bubble

    required property MascotViewModel message
    readonly property real textWidth: 276

    /// Puts the keyboard on the first answer.
    function takeFocus(): void {
        if (primaryButton.visible)
            primaryButton.forceActiveFocus(Qt.TabFocusReason);
        else
            secondaryButton.forceActiveFocus(Qt.TabFocusReason);
    }

    function perform(): void {
        kippo.state = message.wakes ? MascotItem.Wake : MascotItem.Talk;
        kippo.restart();
    }

    implicitWidth: said.x + Math.max(words.width, answers.width) + Theme.margin
    implicitHeight: Math.max(said.height + 2 * (Theme.margin - 2), kippo.size + 2 * Theme.gap + Theme.unit)
    opacity: message.speaks ? 1 : 0
    visible: message.speaks || opacity > 0
    enabled: message.speaks

    // Comes down a little as it appears; leaves where it is.
    transform: Translate {
        y: -8 * (1 - bubble.opacity) * (bubble.message.speaks ? 1 : 0)
    }

    Behavior on opacity {
        NumberAnimation {
            duration: bubble.message.speaks ? Motion.reveal : Motion.conceal
            easing.type: Easing.OutCubic
        }
    }

    Accessible.role: Accessible.AlertMessage
    Accessible.name: message.text

    Component.onCompleted: if (message.speaks)
        perform()

    Connections {
        target: bubble.message

        function onMessageChanged(): void {
            if (bubble.message.speaks)
                bubble.perform();
        }
    }

    Keys.onEscapePressed: message.dismiss()
    Keys.onLeftPressed: primaryButton.forceActiveFocus(Qt.TabFocusReason)
    Keys.onRightPressed: if (secondaryButton.visible)
        secondaryButton.forceActiveFocus(Qt.TabFocusReason)
    onActiveFocusChanged: message.setAttended(activeFocus || pointer.hovered)

    HoverHandler {
        id: pointer

        onHoveredChanged: bubble.message.setAttended(hovered || bubble.activeFocus)
    }

    Rectangle {
        anchors.fill: parent
        radius: 20
        color: Theme.surface
        border.color: Theme.hairline
    }

    MascotItem {
        id: kippo

        x: Theme.margin + size / 2 - width / 2
        anchors.bottom: parent.bottom
        anchors.bottomMargin: Theme.gap
        size: 60
        mood: bubble.message.mood
        reduced: Motion.reduced
        // Awake, he speaks.
        onMovingChanged: if (!moving && state === MascotItem.Wake)
            state = MascotItem.Talk
    }

    Column {
        id: said

        x: Theme.margin + kippo.size + Theme.margin
        anchors.verticalCenter: parent.verticalCenter
        spacing: Theme.gap + 2

        PlainText {
            id: words

            width: Math.min(implicitWidth, bubble.textWidth)
            text: bubble.message.text
            wrapMode: Text.Wrap
            maximumLineCount: 5
            lineHeight: 1.1
            font.pixelSize: Theme.titleSize
            font.weight: Font.Medium
        }

        Row {
            id: answers

            spacing: Theme.gap

            BubbleButton {
                id: primaryButton

                visible: title !== ""
                title: bubble.message.primary
                isPrimary: true
                onClicked: bubble.message.answerPrimary()
            }

            BubbleButton {
                id: secondaryButton

                visible: title !== ""
                title: bubble.message.secondary
                onClicked: bubble.message.answerSecondary()
            }
        }
    }
}
