pragma ComponentBehavior: Bound
import QtQuick
import QtQuick.Templates as T
import Kippo

/// The setup guide of one agent, step by step.
SettingsSheet {
    id: sheet

    required property AgentSettingsViewModel agents
    property var steps: []

    function show(kind: int, title: string) {
        sheet.title = "Setting up " + title;
        sheet.steps = sheet.agents.setupGuide(kind);
        sheet.open();
    }

    title: ""
    bodyHeight: column.height + 8

    Flickable {
        id: view

        anchors.fill: parent
        contentWidth: width
        contentHeight: column.height + 8
        boundsBehavior: Flickable.StopAtBounds
        clip: true
        T.ScrollBar.vertical: ThinScrollBar {}

        Column {
            id: column

            x: 22
            width: view.width - 2 * x
            spacing: 16

            Repeater {
                model: sheet.steps

                Item {
                    id: step

                    required property int index
                    required property var modelData

                    width: column.width
                    height: words.height

                    Rectangle {
                        width: 24
                        height: 24
                        radius: 12
                        color: SettingsTheme.selected

                        SettingsText {
                            anchors.centerIn: parent
                            text: step.index + 1
                            font.pixelSize: SettingsTheme.noteSize
                            font.weight: Font.DemiBold
                            lineHeight: 1
                        }
                    }

                    Column {
                        id: words

                        x: 38
                        y: 2
                        width: parent.width - x
                        spacing: 2

                        SettingsText {
                            width: parent.width
                            text: step.modelData.title
                            font.weight: Font.DemiBold
                        }

                        SettingsText {
                            width: parent.width
                            text: step.modelData.text
                            color: SettingsTheme.textSecondary
                        }
                    }
                }
            }
        }
    }

    buttons: PushButton {
        focus: true
        isProminent: true
        text: "Done"
        onClicked: sheet.close()
    }
}
