pragma ComponentBehavior: Bound
import QtQuick
import Kippo

/// Which Kippo this is, and what to do when it does something wrong.
SettingsPage {
    id: page

    required property AboutViewModel about

    function showReport() {
        reportSheet.show();
    }

    title: "About"
    drawing: Icon.Info

    Item {
        width: parent ? parent.width : 0
        height: 116

        MascotItem {
            id: portrait

            x: -12
            anchors.bottom: parent.bottom
            anchors.bottomMargin: 8
            size: 84
            reduced: Motion.reduced
            state: MascotItem.Idle
            Accessible.role: Accessible.Graphic
            Accessible.name: "Kippo, a small bat"

            TapHandler {
                onTapped: {
                    portrait.state = MascotItem.Cheer;
                    portrait.restart();
                }
            }
        }

        Column {
            anchors.left: portrait.right
            anchors.leftMargin: 4
            anchors.right: parent.right
            anchors.verticalCenter: parent.verticalCenter
            spacing: 3

            SettingsText {
                text: "Kippo"
                font.pixelSize: 20
                font.weight: Font.DemiBold
            }

            SettingsText {
                text: "Version " + page.about.version
                color: SettingsTheme.textSecondary
            }

            SettingsText {
                width: parent.width
                text: "Tells you at a glance which agents work, need you, or are done. Nothing of it leaves this machine."
                color: SettingsTheme.textTertiary
                font.pixelSize: SettingsTheme.noteSize
            }
        }
    }

    SettingsGroup {
        title: "Something wrong?"

        GroupRow {
            implicitHeight: 56

            SettingsText {
                x: SettingsTheme.rowMargin
                anchors.verticalCenter: parent.verticalCenter
                width: reporter.x - x - 16
                text: "You see the whole report before it goes."
                color: SettingsTheme.textSecondary
            }

            PushButton {
                id: reporter

                anchors.right: parent.right
                anchors.rightMargin: SettingsTheme.rowMargin
                anchors.verticalCenter: parent.verticalCenter
                text: "Report a Problem…"
                onClicked: page.showReport()
            }
        }
    }

    SettingsGroup {
        title: "What Kippo stands on"
        note: "Kippo itself is free software under the MIT licence. The full texts are in /usr/share/doc."

        Repeater {
            model: page.about.components

            GroupRow {
                id: component

                required property var modelData

                implicitHeight: 44
                Accessible.role: Accessible.StaticText
                Accessible.name: modelData.name + ", " + modelData.purpose + ", licence " + modelData.licence

                SettingsText {
                    id: componentName

                    x: SettingsTheme.rowMargin
                    anchors.verticalCenter: parent.verticalCenter
                    width: 96
                    text: component.modelData.name
                    font.weight: Font.Medium
                    wrapMode: Text.NoWrap
                    Accessible.ignored: true
                }

                SettingsText {
                    anchors.left: componentName.right
                    anchors.leftMargin: 12
                    anchors.right: licence.left
                    anchors.rightMargin: 12
                    anchors.baseline: componentName.baseline
                    text: component.modelData.purpose
                    color: SettingsTheme.textTertiary
                    font.pixelSize: SettingsTheme.noteSize
                    wrapMode: Text.NoWrap
                    elide: Text.ElideRight
                    Accessible.ignored: true
                }

                SettingsText {
                    id: licence

                    anchors.right: parent.right
                    anchors.rightMargin: SettingsTheme.rowMargin
                    anchors.baseline: componentName.baseline
                    text: component.modelData.licence
                    color: SettingsTheme.textSecondary
                    font.pixelSize: SettingsTheme.noteSize
                    wrapMode: Text.NoWrap
                    Accessible.ignored: true
                }
            }
        }
    }

    ReportSheet {
        id: reportSheet

        objectName: "reportSheet"
        about: page.about
    }
}
