pragma ComponentBehavior: Bound
import QtQuick
import QtQuick.Templates as T
import Kippo

/// The names of the pages. The arrow keys move between them.
Rectangle {
    id: sidebar

    required property list<SettingsPage> pages
    property int current: 0
    readonly property SettingsPage shown: pages[current]
    /// Whether the last move between the pages came from the keyboard; a ring for the mouse would only be noise.
    property bool byKeyboard: false

    color: SettingsTheme.sidebar

    ListView {
        id: list

        anchors.fill: parent
        anchors.margins: 12
        anchors.topMargin: 20
        spacing: 2
        focus: true
        activeFocusOnTab: true
        keyNavigationEnabled: true
        interactive: contentHeight > height
        boundsBehavior: Flickable.StopAtBounds
        model: sidebar.pages
        currentIndex: sidebar.current
        highlightMoveDuration: 0
        Accessible.role: Accessible.PageTabList
        Accessible.name: "Settings"
        onCurrentIndexChanged: sidebar.current = currentIndex

        delegate: T.AbstractButton {
            id: entry

            required property int index
            required property SettingsPage modelData
            readonly property bool isCurrent: index === sidebar.current

            width: ListView.view.width
            implicitHeight: 34
            hoverEnabled: true
            focusPolicy: Qt.NoFocus
            Accessible.role: Accessible.PageTab
            Accessible.name: modelData.title
            Accessible.selected: isCurrent
            onClicked: {
                sidebar.byKeyboard = false;
                sidebar.current = entry.index;
                list.forceActiveFocus(Qt.MouseFocusReason);
            }

            Rectangle {
                anchors.fill: parent
                radius: SettingsTheme.controlCorner
                color: entry.isCurrent ? SettingsTheme.selected : entry.hovered ? SettingsTheme.hover : "transparent"

                FocusRing {
                    distance: 0
                    shown: entry.isCurrent && list.activeFocus && sidebar.byKeyboard
                }
            }

            Icon {
                x: 10
                anchors.verticalCenter: parent.verticalCenter
                width: 18
                height: 18
                name: entry.modelData.drawing
                color: entry.isCurrent ? SettingsTheme.text : SettingsTheme.textSecondary
            }

            SettingsText {
                x: 38
                height: parent.height
                width: parent.width - x - 8
                text: entry.modelData.title
                color: entry.isCurrent ? SettingsTheme.text : SettingsTheme.textSecondary
                font.weight: entry.isCurrent ? Font.DemiBold : Font.Medium
                wrapMode: Text.NoWrap
                elide: Text.ElideRight
                lineHeight: 1
                Accessible.ignored: true
            }
        }
    }

    Keys.onPressed: event => {
        sidebar.byKeyboard = true;
        event.accepted = false;
    }

    Rectangle {
        anchors.right: parent.right
        width: 1
        height: parent.height
        color: SettingsTheme.hairline
    }
}
