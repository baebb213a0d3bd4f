import QtQuick
import Kippo

/// A page's tab: its icon, its name while it is shown and there is room, and what goes on there.
Item {
    id: tab

    required property int icon
    required property string name
    /// What a screen reader says.
    property string spoken: name
    property bool isShown: false
    property bool hasName: isShown
    /// What goes on, beside the name.
    default property alias figures: row.data

    signal chosen

    implicitWidth: content.width + 2 * 6
    activeFocusOnTab: true

    Accessible.role: Accessible.PageTab
    Accessible.name: spoken
    Accessible.selectable: true
    Accessible.selected: isShown
    Accessible.onPressAction: chosen()
    Keys.onReturnPressed: chosen()
    Keys.onEnterPressed: chosen()
    Keys.onSpacePressed: chosen()

    HoverHandler {
        id: pointer

        cursorShape: Qt.PointingHandCursor
    }

    MouseArea {
        anchors.fill: parent
        onClicked: tab.chosen()
    }

    Rectangle {
        anchors.verticalCenter: parent.verticalCenter
        width: parent.width
        height: Math.min(22, parent.height - 4)
        radius: Theme.unit + 2
        color: tab.isShown || pointer.hovered ? Theme.control : "transparent"
        border.color: Theme.focus
        border.width: tab.activeFocus ? 1 : 0
    }

    Row {
        id: content

        x: 6
        height: parent.height
        spacing: 6

        Icon {
            anchors.verticalCenter: parent.verticalCenter
            width: 15
            height: 15
            name: tab.icon
            color: tab.isShown || pointer.hovered ? Theme.text : Theme.textTertiary
        }

        PlainText {
            height: parent.height
            visible: tab.hasName
            text: tab.name
            font.weight: Font.DemiBold
        }

        Row {
            id: row

            height: parent.height
            spacing: Theme.unit + 2
        }
    }
}
