import QtQuick

/// Text in the settings window; wraps, unless it is told to stay on one line.
PlainText {
    color: SettingsTheme.text
    font.pixelSize: SettingsTheme.bodySize
    wrapMode: Text.Wrap
    maximumLineCount: 100
    elide: Text.ElideNone
    lineHeight: 1.15
}
