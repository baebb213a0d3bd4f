import QtQuick

/// A named fact: its name in a column of its own, then a text of a few lines. Takes no room without text.
Item {
    id: fact

    required property string label
    property string text
    property int lines: 1
    property int elide: Text.ElideRight
    property color tone: Theme.textSecondary

    visible: text !== ""
    implicitHeight: Math.max(Theme.lineHeight, value.implicitHeight + 3)

    Accessible.role: Accessible.StaticText
    Accessible.name: label + ": " + text

    PlainText {
        width: Theme.labelWidth
        height: Theme.lineHeight
        text: fact.label
        color: Theme.textTertiary
        font.pixelSize: Theme.metaSize
    }

    PlainText {
        id: value

        x: Theme.labelWidth
        y: 1
        width: fact.width - x
        text: fact.text
        color: fact.tone
        maximumLineCount: fact.lines
        wrapMode: fact.lines > 1 ? Text.Wrap : Text.NoWrap
        elide: fact.elide
        verticalAlignment: Text.AlignTop
    }
}
