pragma ComponentBehavior: Bound
import QtQuick
import Kippo

/// The agents page's sections, as one line; the one that is shown stands out. Where there is no room for all the names,
/// the others are icons.
Row {
    id: tabs

    required property AgentsViewModel agents
    required property LeftBehindViewModel leftBehind
    property real room: Infinity
    readonly property bool isShort: names.width + 2 * spacing > room

    spacing: Theme.gap + 2

    Accessible.role: Accessible.PageTabList
    Accessible.name: "Sections"

    /// How long the names are together.
    TextMetrics {
        id: names

        font.family: Theme.family
        font.pixelSize: Theme.metaSize
        font.weight: Font.DemiBold
        text: nowTab.name + usageTab.name + leftTab.name + (leftTab.count === "" ? "" : "_" + leftTab.count)
    }

    component Tab: Item {
        id: tab

        required property int section
        required property string name
        required property int icon
        property string count
        readonly property bool isShown: tabs.agents.section === section
        readonly property color tone: isShown ? Theme.text : pointer.hovered || activeFocus ? Theme.textSecondary : Theme.textTertiary

        function show() {
            tabs.agents.section = section;
        }

        width: content.width
        height: tabs.height
        activeFocusOnTab: true

        Accessible.role: Accessible.PageTab
        Accessible.name: count === "" ? name : name + ", " + count
        Accessible.selectable: true
        Accessible.selected: isShown
        Accessible.onPressAction: show()
        Keys.onReturnPressed: show()
        Keys.onEnterPressed: show()
        Keys.onSpacePressed: show()

        HoverHandler {
            id: pointer

            cursorShape: Qt.PointingHandCursor
        }

        MouseArea {
            anchors.fill: parent
            onClicked: tab.show()
        }

        Row {
            id: content

            height: parent.height
            spacing: Theme.unit

            Icon {
                anchors.verticalCenter: parent.verticalCenter
                width: 15
                height: 15
                visible: !label.visible
                name: tab.icon
                color: tab.tone
            }

            PlainText {
                id: label

                height: parent.height
                visible: !tabs.isShort || tab.isShown
                text: tab.name
                color: tab.tone
                font.pixelSize: Theme.metaSize
                font.weight: Font.DemiBold
            }

            PlainText {
                height: parent.height
                visible: tab.count !== ""
                text: tab.count
                color: tab.tone
                font.pixelSize: Theme.metaSize
                font.weight: Font.Medium
            }
        }

        // The shown one stands on the strip's lower edge, so to speak; the keyboard's in its own colour.
        Rectangle {
            width: parent.width
            height: 2
            anchors.bottom: parent.bottom
            anchors.bottomMargin: 1
            radius: 1
            color: tab.activeFocus ? Theme.focus : Theme.textSecondary
            visible: tab.isShown || tab.activeFocus
        }
    }

    Tab {
        id: nowTab

        section: AgentsViewModel.Sessions
        name: "Now"
        icon: Icon.List
    }

    Tab {
        id: usageTab

        section: AgentsViewModel.Usage
        name: "Usage"
        icon: Icon.Bars
    }

    Tab {
        id: leftTab

        section: AgentsViewModel.LeftBehind
        name: "Left behind"
        icon: Icon.Box
        count: tabs.leftBehind.countText
    }
}
