pragma ComponentBehavior: Bound
import QtQuick
import Kippo

/// The names of the page's sections, as one line; the one that is shown stands out.
Row {
    id: tabs

    required property AgentsViewModel agents
    required property LeftBehindViewModel leftBehind

    spacing: Theme.gap + Theme.unit

    Accessible.role: Accessible.PageTabList
    Accessible.name: "Sections"

    component Tab: Item {
        id: tab

        required property int section
        required property string name
        property string count
        readonly property bool isShown: tabs.agents.section === section

        function show() {
            tabs.agents.section = section;
        }

        width: label.width + (count === "" ? 0 : number.width + Theme.unit)
        height: tabs.height
        activeFocusOnTab: true

        Accessible.role: Accessible.PageTab
        Accessible.name: count === "" ? name : name + ", " + count
        Accessible.selected: isShown
        Accessible.onPressAction: show()
        Keys.onReturnPressed: show()
        Keys.onSpacePressed: show()

        HoverHandler {
            id: pointer

            cursorShape: Qt.PointingHandCursor
        }

        MouseArea {
            anchors.fill: parent
            onClicked: tab.show()
        }

        PlainText {
            id: label

            height: parent.height
            text: tab.name
            color: tab.isShown ? Theme.text : pointer.hovered || tab.activeFocus ? Theme.textSecondary : Theme.textTertiary
            font.pixelSize: Theme.titleSize
            font.weight: Font.DemiBold
            font.underline: tab.activeFocus
        }

        PlainText {
            id: number

            anchors.left: label.right
            anchors.leftMargin: Theme.unit
            height: parent.height
            visible: tab.count !== ""
            text: tab.count
            color: Theme.textTertiary
            font.pixelSize: Theme.metaSize
            font.weight: Font.Medium
        }
    }

    Tab {
        section: AgentsViewModel.Sessions
        name: "Agents"
    }

    Tab {
        section: AgentsViewModel.Usage
        name: "Usage"
    }

    Tab {
        section: AgentsViewModel.LeftBehind
        name: "Left behind"
        count: tabs.leftBehind.countText
    }
}
