pragma ComponentBehavior: Bound
import QtQuick
import QtQuick.Templates as T
import Kippo

/// Shows what connecting or disconnecting an agent would do to its file, and does it.
SettingsSheet {
    id: sheet

    required property AgentSettingsViewModel agents
    property int kind: AgentLook.Kind.Custom
    property bool connects: true
    property PlannedChange change: null

    function show(kind: int, title: string, connects: bool) {
        sheet.kind = kind;
        sheet.connects = connects;
        sheet.change = sheet.agents.plannedChange(kind, connects);
        sheet.title = (connects ? "Connecting " : "Disconnecting ") + title;
        sheet.open();
    }

    title: ""
    subtitle: change ? change.file + (change.isImpossible || !change.isNeeded ? "" : ": " + change.summary) : ""
    bodyHeight: change && change.isNeeded ? lines.contentHeight + 12 : 64

    Rectangle {
        anchors.fill: parent
        anchors.leftMargin: 22
        anchors.rightMargin: 22
        visible: lines.visible
        radius: 8
        color: SettingsTheme.field
        border.width: 1
        border.color: SettingsTheme.hairline
    }

    ListView {
        id: lines

        anchors.fill: parent
        anchors.leftMargin: 23
        anchors.rightMargin: 23
        anchors.topMargin: 6
        anchors.bottomMargin: 6
        visible: sheet.change ? sheet.change.isNeeded : false
        clip: true
        focus: true
        activeFocusOnTab: true
        boundsBehavior: Flickable.StopAtBounds
        model: sheet.change
        Accessible.role: Accessible.List
        Accessible.name: "The change, line by line"
        Keys.onDownPressed: flick(0, -700)
        Keys.onUpPressed: flick(0, 700)
        T.ScrollBar.vertical: ThinScrollBar {}

        delegate: Rectangle {
            id: entry

            required property string mark
            required property string line
            readonly property color ink: mark === "+" ? SettingsTheme.added
                                       : mark === "-" ? SettingsTheme.removed : SettingsTheme.textSecondary

            width: ListView.view.width
            height: words.implicitHeight + 2
            color: mark === "+" ? SettingsTheme.addedGround
                 : mark === "-" ? SettingsTheme.removedGround : "transparent"
            Accessible.role: Accessible.ListItem
            Accessible.name: (mark === "+" ? "added: " : mark === "-" ? "removed: " : "") + line

            SettingsText {
                x: 10
                y: 1
                text: entry.mark === "@" ? "" : entry.mark
                color: entry.ink
                font.family: SettingsTheme.codeFamily
                font.pixelSize: SettingsTheme.codeSize
                Accessible.ignored: true
            }

            SettingsText {
                id: words

                x: 26
                y: 1
                width: entry.width - x - 14
                text: entry.line
                color: entry.ink
                wrapMode: Text.WrapAnywhere
                font.family: SettingsTheme.codeFamily
                font.pixelSize: SettingsTheme.codeSize
                Accessible.ignored: true
            }
        }
    }

    SettingsText {
        x: 22
        width: parent.width - 44
        visible: !lines.visible
        text: sheet.change ? sheet.change.summary : ""
        color: sheet.change && sheet.change.isImpossible ? SettingsTheme.warning : SettingsTheme.text
    }

    buttons: [
        PushButton {
            text: "Close"
            onClicked: sheet.close()
        },
        PushButton {
            visible: sheet.change ? sheet.change.isNeeded : false
            isProminent: true
            text: sheet.connects ? "Connect" : "Disconnect"
            onClicked: {
                if (sheet.connects)
                    sheet.agents.connectAgent(sheet.kind);
                else
                    sheet.agents.disconnectAgent(sheet.kind);
                sheet.close();
            }
        }
    ]
}
