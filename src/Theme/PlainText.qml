import QtQuick

/// One line of text that elides. The only place that creates a Text, because prompts, tool names and summaries are
/// strangers' text and must never be read as markup.
Text {
    textFormat: Text.PlainText
    color: Theme.text
    elide: Text.ElideRight
    maximumLineCount: 1
    verticalAlignment: Text.AlignVCenter
    // Rows keep their columns, whichever way their script runs.
    horizontalAlignment: Text.AlignLeft
    font.family: Theme.family
    font.pixelSize: Theme.bodySize
}
