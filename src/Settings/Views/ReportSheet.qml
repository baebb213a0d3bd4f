import QtQuick
import QtQuick.Templates as T
import Kippo

/// What a problem report says, before it goes anywhere.
SettingsSheet {
    id: sheet

    required property AboutViewModel about
    property string report
    property bool hasCopied: false

    function show() {
        sheet.report = sheet.about.reportText();
        sheet.hasCopied = false;
        sheet.about.clearProblem();
        sheet.open();
    }

    title: "Report a problem"
    subtitle: "This is all that goes: no prompts, no folders, no addresses. Your mail program opens with it, and you can add "
              + "what happened."
    bodyHeight: words.implicitHeight + 32 + (trouble.visible ? trouble.height + 10 : 0)

    Rectangle {
        id: paper

        x: 22
        width: parent.width - 44
        height: parent.height - (trouble.visible ? trouble.height + 10 : 0)
        radius: 8
        color: SettingsTheme.field
        border.width: view.activeFocus ? 2 : 1
        border.color: view.activeFocus ? SettingsTheme.accentText : SettingsTheme.hairline

        Flickable {
            id: view

            anchors.fill: parent
            anchors.margins: 2
            clip: true
            activeFocusOnTab: contentHeight > height
            contentWidth: width
            contentHeight: words.implicitHeight + 24
            boundsBehavior: Flickable.StopAtBounds
            Keys.onDownPressed: flick(0, -700)
            Keys.onUpPressed: flick(0, 700)
            T.ScrollBar.vertical: ThinScrollBar {}

            SettingsText {
                id: words

                x: 12
                y: 12
                width: view.width - 24
                text: sheet.report
                color: SettingsTheme.textSecondary
                font.family: SettingsTheme.codeFamily
                font.pixelSize: SettingsTheme.codeSize
                lineHeight: 1.3
                maximumLineCount: 2000
                Accessible.role: Accessible.StaticText
                Accessible.name: sheet.report
            }
        }
    }

    SettingsText {
        id: trouble

        x: 22
        anchors.top: paper.bottom
        anchors.topMargin: 10
        width: parent.width - 44
        visible: text !== ""
        text: sheet.about.problem
        color: SettingsTheme.warning
        font.pixelSize: SettingsTheme.noteSize
        Accessible.role: Accessible.AlertMessage
        Accessible.name: text
    }

    buttons: [
        PushButton {
            text: sheet.hasCopied ? "Copied" : "Copy"
            spoken: sheet.hasCopied ? "Copied" : "Copy the report"
            onClicked: {
                sheet.about.copyReport();
                sheet.hasCopied = true;
            }
        },
        PushButton {
            focus: true
            isProminent: true
            text: "Send by mail…"
            spoken: "Send the report by mail"
            onClicked: {
                if (sheet.about.sendReport())
                    sheet.close();
            }
        }
    ]
}
