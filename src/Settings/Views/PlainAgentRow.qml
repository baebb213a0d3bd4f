import QtQuick
import Kippo

/// An agent that is followed without hooks: whether its sessions are shown, and whether they count in the lights.
GroupRow {
    id: row

    required property AgentSettingsViewModel agents
    required property int kind
    required property string title
    required property string note
    required property bool isListed
    required property bool hasLights
    property bool isOpen: false

    implicitHeight: head.height + (isOpen ? details.height : 0)
    clip: true

    Behavior on implicitHeight {
        NumberAnimation { duration: Motion.reveal; easing.type: Easing.OutCubic }
    }

    Item {
        id: head

        width: row.width
        height: 60

        TapHandler {
            onTapped: row.isOpen = !row.isOpen
        }

        AgentBadge {
            x: SettingsTheme.rowMargin
            anchors.verticalCenter: parent.verticalCenter
            width: SettingsTheme.badgeSize
            height: width
            kind: row.kind
        }

        Column {
            x: SettingsTheme.textIndent
            anchors.verticalCenter: parent.verticalCenter
            width: opener.x - x - 12
            spacing: 2

            SettingsText {
                width: parent.width
                text: row.title
                font.weight: Font.DemiBold
            }

            SettingsText {
                width: parent.width
                text: !row.isListed ? "Hidden" : row.note + (row.hasLights ? "" : "; no lights")
                color: SettingsTheme.textTertiary
                font.pixelSize: SettingsTheme.noteSize
                wrapMode: Text.NoWrap
                elide: Text.ElideRight
            }
        }

        IconButton {
            id: opener

            anchors.right: parent.right
            anchors.rightMargin: 8
            anchors.verticalCenter: parent.verticalCenter
            drawing: Icon.Chevron
            turn: row.isOpen ? 90 : 0
            spoken: (row.isOpen ? "Fewer settings of " : "More settings of ") + row.title
            onClicked: row.isOpen = !row.isOpen
        }
    }

    Column {
        id: details

        y: head.height
        width: row.width
        visible: row.implicitHeight > head.height + 1
        enabled: row.isOpen

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
    }
}
