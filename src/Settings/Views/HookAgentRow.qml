import QtQuick
import Kippo

/// An agent that reports through hooks: how far its connection has come, and, opened, everything else about it.
GroupRow {
    id: row

    required property AgentSettingsViewModel agents
    required property int kind
    required property string title
    required property string sentence
    required property string advice
    required property string settingsFile
    required property string instructionsFile
    required property bool isConnected
    required property bool isProven
    required property bool isListed
    required property bool hasLights
    required property bool asksForSummary
    property bool isOpen: false
    /// Only the connection, without everything else about the agent.
    property bool isBrief: false

    signal changeAsked(bool connects)
    signal guideAsked()

    implicitHeight: head.height + (isOpen ? details.height : 0)
    clip: true

    Behavior on implicitHeight {
        NumberAnimation { duration: Motion.reveal; easing.type: Easing.OutCubic }
    }

    Item {
        id: head

        width: row.width
        height: Math.max(60, words.height + 24)

        TapHandler {
            enabled: !row.isBrief
            onTapped: row.isOpen = !row.isOpen
        }

        AgentBadge {
            x: SettingsTheme.rowMargin
            y: Math.min(14, (head.height - height) / 2)
            width: SettingsTheme.badgeSize
            height: width
            kind: row.kind
        }

        Column {
            id: words

            x: SettingsTheme.textIndent
            anchors.verticalCenter: parent.verticalCenter
            width: actions.x - x - 12
            spacing: 2

            SettingsText {
                width: parent.width
                text: row.title
                font.weight: Font.DemiBold
                wrapMode: Text.NoWrap
                elide: Text.ElideRight
            }

            Item {
                width: parent.width
                height: state.height

                StatusGlyph {
                    id: light

                    visible: row.isConnected
                    y: 4
                    width: 10
                    height: 10
                    status: row.isProven ? AgentLook.Status.Done : AgentLook.Status.Idle
                    color: row.isProven ? SettingsTheme.good : SettingsTheme.waiting
                }

                SettingsText {
                    id: state

                    x: light.visible ? 15 : 0
                    width: parent.width - x
                    text: row.sentence
                    color: row.isProven ? SettingsTheme.good
                                        : row.isConnected ? SettingsTheme.waiting : SettingsTheme.textTertiary
                    font.pixelSize: SettingsTheme.noteSize
                }
            }

            SettingsText {
                width: parent.width
                visible: text !== ""
                text: row.advice
                color: SettingsTheme.textSecondary
                font.pixelSize: SettingsTheme.noteSize
            }
        }

        Row {
            id: actions

            anchors.right: parent.right
            anchors.rightMargin: row.isBrief ? SettingsTheme.rowMargin : 8
            anchors.verticalCenter: parent.verticalCenter
            spacing: 4

            PushButton {
                visible: !row.isConnected
                isQuiet: true
                text: "Show the change"
                spoken: "Show the change that connecting " + row.title + " makes"
                onClicked: row.changeAsked(true)
            }

            PushButton {
                visible: !row.isConnected
                isProminent: true
                text: "Connect"
                spoken: "Connect " + row.title
                onClicked: row.agents.connectAgent(row.kind)
            }

            PushButton {
                visible: row.isConnected
                text: "Disconnect"
                spoken: "Disconnect " + row.title
                onClicked: row.agents.disconnectAgent(row.kind)
            }

            IconButton {
                visible: !row.isBrief
                drawing: Icon.Chevron
                turn: row.isOpen ? 90 : 0
                spoken: (row.isOpen ? "Fewer settings of " : "More settings of ") + row.title
                onClicked: row.isOpen = !row.isOpen
            }
        }
    }

    Column {
        id: details

        y: head.height
        width: row.width
        visible: row.implicitHeight > head.height + 1
        enabled: row.isOpen

        SwitchRow {
            visible: row.instructionsFile !== ""
            indent: SettingsTheme.textIndent
            title: "Ask for a one-line summary"
            note: "Adds a short block to " + row.instructionsFile
                  + ", so that a turn ends with what was done or what is needed"
            isOn: row.asksForSummary
            onSwitched: on => row.agents.askForSummary(row.kind, on)
        }

        SwitchRow {
            indent: SettingsTheme.textIndent
            title: "Show its sessions"
            isOn: row.isListed
            onSwitched: on => row.agents.setListed(row.kind, on)
        }

        SwitchRow {
            indent: SettingsTheme.textIndent
            title: "Status lights"
            note: "Its sessions count beside the closed notch"
            isOn: row.hasLights
            onSwitched: on => row.agents.setLights(row.kind, on)
        }

        GroupRow {
            lineIndent: SettingsTheme.textIndent
            implicitHeight: tools.height + 20

            Flow {
                id: tools

                x: SettingsTheme.textIndent
                y: 10
                width: parent.width - x - SettingsTheme.rowMargin
                spacing: 8

                PushButton {
                    text: "Setup guide"
                    spoken: "Setup guide for " + row.title
                    onClicked: row.guideAsked()
                }

                PushButton {
                    id: copier

                    property bool hasCopied: false

                    text: hasCopied ? "Copied" : "Copy prompt for your AI"
                    spoken: hasCopied ? text : "Copy the prompt that lets your AI connect " + row.title
                    onClicked: {
                        row.agents.copyPrompt(row.kind);
                        hasCopied = true;
                        confirmation.restart();
                    }

                    Timer {
                        id: confirmation

                        interval: 2500
                        onTriggered: copier.hasCopied = false
                    }
                }

                PushButton {
                    visible: row.isConnected
                    text: "Show what disconnecting removes"
                    onClicked: row.changeAsked(false)
                }
            }
        }
    }
}
