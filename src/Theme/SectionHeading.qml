import QtQuick

/// The title of a part of a page, its figures beside it, its actions at the right.
Item {
    id: heading

    required property string title
    property string figures
    default property alias actions: row.data

    height: Theme.shortRowHeight

    Accessible.role: Accessible.Heading
    Accessible.name: figures === "" ? title : heading.title + ", " + figures

    PlainText {
        id: name

        x: Theme.gap
        height: parent.height
        text: heading.title
        font.weight: Font.DemiBold
    }

    PlainText {
        anchors.left: name.right
        anchors.leftMargin: Theme.gap
        anchors.right: row.left
        anchors.rightMargin: Theme.gap
        height: parent.height
        text: heading.figures
        color: Theme.textTertiary
        font.pixelSize: Theme.metaSize
    }

    Row {
        id: row

        anchors.right: parent.right
        anchors.rightMargin: Theme.gap
        anchors.verticalCenter: parent.verticalCenter
        spacing: Theme.unit + 2
    }
}
