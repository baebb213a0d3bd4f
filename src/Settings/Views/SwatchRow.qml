pragma ComponentBehavior: Bound
import QtQuick
import QtQuick.Templates as T
import Kippo

/// A choice among colours. `lead` stands before the others: the choice that is no colour of its own.
GroupRow {
    id: row

    required property string title
    property string note
    required property var choices
    required property string chosen
    property string leadValue
    property string leadLabel
    property color leadColour
    property bool isWide: false

    readonly property var all: leadValue === "" ? choices
        : [{ "value": leadValue, "label": leadLabel, "colour": leadColour, "isLead": true }, ...choices]
    readonly property string chosenLabel: {
        for (const choice of row.all) {
            if (choice.value === row.chosen)
                return choice.label;
        }
        return "";
    }

    signal chose(string value)

    implicitHeight: words.height + swatches.height + 34

    Column {
        id: words

        x: SettingsTheme.rowMargin
        y: 12
        width: parent.width - 2 * x
        spacing: 2

        Item {
            width: parent.width
            height: heading.height

            SettingsText {
                id: heading

                text: row.title
                wrapMode: Text.NoWrap
            }

            SettingsText {
                anchors.right: parent.right
                text: row.chosenLabel
                color: SettingsTheme.textSecondary
                wrapMode: Text.NoWrap
                Accessible.ignored: true
            }
        }

        SettingsText {
            width: parent.width
            visible: text !== ""
            text: row.note
            color: SettingsTheme.textTertiary
            font.pixelSize: SettingsTheme.noteSize
        }
    }

    Row {
        id: swatches

        x: SettingsTheme.rowMargin
        y: words.y + words.height + 10
        spacing: 12

        Repeater {
            model: row.all

            T.AbstractButton {
                id: swatch

                required property var modelData
                readonly property bool isChosen: modelData.value === row.chosen
                readonly property bool isLead: modelData.isLead === true
                readonly property string spoken: row.title + ": " + modelData.label

                width: row.isWide ? 92 : 26
                height: row.isWide ? 54 : 26
                hoverEnabled: true
                focusPolicy: Qt.StrongFocus
                Accessible.role: Accessible.RadioButton
                Accessible.name: spoken
                Accessible.checkable: true
                Accessible.checked: isChosen
                Keys.onReturnPressed: clicked()
                onClicked: row.chose(modelData.value)

                Rectangle {
                    anchors.fill: parent
                    anchors.margins: -3
                    radius: row.isWide ? 11 : height / 2
                    color: "transparent"
                    border.width: 2
                    border.color: swatch.isChosen ? SettingsTheme.accent : "transparent"
                }

                Rectangle {
                    anchors.fill: parent
                    visible: !row.isWide
                    radius: height / 2
                    // The choice that is no colour of its own is a ring.
                    color: swatch.isLead ? "transparent" : swatch.modelData.colour
                    border.width: swatch.isLead ? 4 : 1
                    border.color: swatch.isLead ? swatch.modelData.colour : SettingsTheme.swatchEdge

                    Icon {
                        anchors.centerIn: parent
                        width: 14
                        height: 14
                        visible: swatch.isChosen
                        name: Icon.Tick
                        color: swatch.isLead ? SettingsTheme.text : SettingsTheme.inkOn(swatch.modelData.colour)
                    }
                }

                NotchPicture {
                    anchors.fill: parent
                    visible: row.isWide
                    corner: 8
                    notchColour: swatch.modelData.colour
                    wing: 11
                    notchHeight: 15
                    notchWidth: 30
                    lightSize: 5
                }

                FocusRing {
                    shown: swatch.visualFocus
                    distance: 5
                    radius: row.isWide ? 13 : height / 2
                }
            }
        }
    }
}
