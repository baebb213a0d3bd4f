import QtQuick
import Kippo

/// What the page says while no agent runs: that this is fine, and what will make it fill.
Column {
    spacing: Theme.unit

    Row {
        anchors.horizontalCenter: parent.horizontalCenter
        spacing: Theme.gap
        bottomPadding: Theme.gap
        opacity: 0.45

        Repeater {
            model: [AgentLook.Kind.Claude, AgentLook.Kind.Codex, AgentLook.Kind.Gemini]

            AgentBadge {
                required property int modelData

                width: Theme.badgeSize
                height: Theme.badgeSize
                kind: modelData
            }
        }
    }

    PlainText {
        anchors.horizontalCenter: parent.horizontalCenter
        text: "No agents running"
        font.pixelSize: Theme.titleSize
        font.weight: Font.DemiBold
    }

    PlainText {
        anchors.horizontalCenter: parent.horizontalCenter
        text: "Start Claude Code, Codex or Gemini CLI in a terminal and it appears here."
        color: Theme.textSecondary
    }
}
