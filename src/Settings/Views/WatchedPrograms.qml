pragma ComponentBehavior: Bound
import QtQuick
import QtQuick.Templates as T
import Kippo

/// The programs that are followed by name, and a field for another.
SettingsGroup {
    id: group

    required property AgentSettingsViewModel agents

    function add(name: string) {
        problem.text = group.agents.watch(name);
        if (problem.text === "")
            field.clear();
    }

    title: "Watched programs"
    note: "Kippo treats a running program of such a name as an agent."

    Repeater {
        model: group.agents.watched

        NameListRow {
            id: entry

            required property string storedName
            required property string shownName

            name: shownName

            IconButton {
                spoken: "Stop watching " + entry.shownName
                onClicked: group.agents.unwatch(entry.storedName)
            }
        }
    }

    Repeater {
        model: group.agents.suggestions

        NameListRow {
            id: suggestion

            required property string storedName
            required property string shownName

            name: shownName
            note: "looks like an agent"

            PushButton {
                text: "Watch"
                spoken: "Watch " + suggestion.shownName
                onClicked: group.add(suggestion.storedName)
            }

            IconButton {
                spoken: "Do not suggest " + suggestion.shownName
                onClicked: group.agents.dismissSuggestion(suggestion.storedName)
            }
        }
    }

    GroupRow {
        implicitHeight: 48 + (problem.text === "" ? 0 : problem.height + 10)

        T.TextField {
            id: field

            x: SettingsTheme.rowMargin
            y: 10
            width: adder.x - x - 8
            height: SettingsTheme.controlHeight
            leftPadding: 9
            rightPadding: 9
            verticalAlignment: TextInput.AlignVCenter
            maximumLength: 120
            selectByMouse: true
            color: SettingsTheme.text
            selectionColor: SettingsTheme.accent
            selectedTextColor: SettingsTheme.accentInk
            font.family: Theme.family
            font.pixelSize: SettingsTheme.bodySize
            Accessible.name: "Name of a program to watch"
            onAccepted: group.add(text)
            onTextEdited: problem.text = ""

            background: Rectangle {
                radius: SettingsTheme.controlCorner
                color: SettingsTheme.field
                border.width: field.activeFocus ? 2 : 1
                border.color: field.activeFocus ? SettingsTheme.accentText : SettingsTheme.border
            }

            SettingsText {
                x: field.leftPadding
                height: parent.height
                visible: field.length === 0 && field.preeditText === ""
                text: "Name of a program, such as goose"
                color: SettingsTheme.textTertiary
                wrapMode: Text.NoWrap
                lineHeight: 1
                Accessible.ignored: true
            }
        }

        PushButton {
            id: adder

            anchors.right: parent.right
            anchors.rightMargin: SettingsTheme.rowMargin
            y: 10
            text: "Add"
            enabled: field.length > 0
            spoken: "Watch this program"
            onClicked: group.add(field.text)
        }

        SettingsText {
            id: problem

            x: SettingsTheme.rowMargin + 2
            y: 44
            width: parent.width - 2 * x
            visible: text !== ""
            color: SettingsTheme.warning
            font.pixelSize: SettingsTheme.noteSize
            Accessible.role: Accessible.AlertMessage
            Accessible.name: text
        }
    }
}
