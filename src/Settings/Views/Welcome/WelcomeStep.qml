import QtQuick

/// One step of the welcome: what it is about, and below it what there is to see or do.
FocusScope {
    id: step

    required property string title
    required property string words
    /// A picture above the words.
    property Item picture
    default property alias body: body.data
    readonly property real bodyWidth: body.width

    anchors.fill: parent
    Accessible.role: Accessible.Pane
    Accessible.name: title

    Column {
        id: head

        anchors.horizontalCenter: parent.horizontalCenter
        // Alone, it stands in the middle.
        y: body.children.length > 0 ? 32 : Math.max(24, Math.round((parent.height - height) / 2) - 8)
        width: Math.min(parent.width - 80, 500)
        spacing: 8

        Item {
            id: frame

            width: parent.width
            height: step.picture ? step.picture.height + 20 : 0
            visible: step.picture !== null
            children: step.picture ? [step.picture] : []
        }

        SettingsText {
            width: parent.width
            horizontalAlignment: Text.AlignHCenter
            text: step.title
            font.pixelSize: 24
            font.weight: Font.DemiBold
            Accessible.role: Accessible.Heading
        }

        SettingsText {
            width: parent.width
            horizontalAlignment: Text.AlignHCenter
            text: step.words
            color: SettingsTheme.textSecondary
            font.pixelSize: 14
            lineHeight: 1.3
        }
    }

    Item {
        id: body

        anchors.top: head.bottom
        anchors.topMargin: 22
        anchors.bottom: parent.bottom
        anchors.horizontalCenter: parent.horizontalCenter
        width: Math.min(parent.width - 64, 620)
    }
}
