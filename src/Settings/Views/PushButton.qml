import QtQuick
import QtQuick.Templates as T

/// A button: plain, prominent where it is what most people come for, or quiet like a link.
T.Button {
    id: button

    property bool isProminent: false
    property bool isQuiet: false
    /// What a screen reader says, where the text alone would not do.
    property string spoken: text

    implicitWidth: implicitContentWidth + leftPadding + rightPadding
    implicitHeight: SettingsTheme.controlHeight
    leftPadding: isQuiet ? 8 : 13
    rightPadding: leftPadding
    hoverEnabled: true
    focusPolicy: Qt.StrongFocus
    Accessible.name: spoken
    Keys.onReturnPressed: clicked()
    Keys.onEnterPressed: clicked()

    contentItem: SettingsText {
        text: button.text
        color: button.isProminent ? SettingsTheme.accentInk
                                  : button.isQuiet ? SettingsTheme.accentText : SettingsTheme.text
        opacity: button.enabled ? 1 : 0.45
        horizontalAlignment: Text.AlignHCenter
        wrapMode: Text.NoWrap
        lineHeight: 1
        font.weight: Font.Medium
        Accessible.ignored: true
    }

    background: Rectangle {
        radius: SettingsTheme.controlCorner
        border.width: button.isProminent || button.isQuiet ? 0 : 1
        border.color: SettingsTheme.border
        opacity: button.enabled ? 1 : 0.5
        color: {
            if (button.isProminent)
                return button.down ? SettingsTheme.accentPressed
                                   : button.hovered ? SettingsTheme.accentHover : SettingsTheme.accent;
            if (button.isQuiet)
                return button.down || button.hovered ? SettingsTheme.hover : "transparent";
            return button.down ? SettingsTheme.controlPressed
                               : button.hovered ? SettingsTheme.controlHover : SettingsTheme.control;
        }

        FocusRing { shown: button.visualFocus }
    }
}
