import QtQuick
import QtQuick.Templates as T

/// A page of the settings: its name, then its groups, as far as they need scrolled. What the keyboard reaches is brought
/// into view.
FocusScope {
    id: page

    required property string title
    /// Of the page's name in the sidebar.
    required property int drawing
    property string intro
    /// Something that went wrong; stays in view above the page until it is put away.
    property string notice
    default property alias groups: groups.data
    readonly property Item focused: Window.activeFocusItem

    signal noticeDismissed()

    anchors.fill: parent
    Accessible.role: Accessible.Pane
    Accessible.name: title

    onFocusedChanged: {
        let above = page.focused;
        while (above && above !== column)
            above = above.parent;
        if (!above)
            return;
        const top = page.focused.mapToItem(column, 0, 0).y + column.y;
        const bottom = top + page.focused.height;
        if (top - 24 < view.contentY)
            view.contentY = Math.max(0, top - 24);
        else if (bottom + 24 > view.contentY + view.height)
            view.contentY = Math.min(Math.max(0, view.contentHeight - view.height), bottom + 24 - view.height);
    }

    NoticeBanner {
        id: banner

        x: column.x
        y: 16
        width: column.width
        visible: page.notice !== ""
        text: page.notice
        onDismissed: page.noticeDismissed()
    }

    Flickable {
        id: view

        anchors.fill: parent
        anchors.topMargin: banner.visible ? banner.y + banner.height + 8 : 0
        contentWidth: width
        contentHeight: column.height + 2 * SettingsTheme.pageMargin
        boundsBehavior: Flickable.StopAtBounds
        clip: true
        T.ScrollBar.vertical: ThinScrollBar {}

        Column {
            id: column

            x: Math.round((view.width - width) / 2)
            y: SettingsTheme.pageMargin - 4
            width: Math.min(view.width - 2 * SettingsTheme.pageMargin, SettingsTheme.pageWidth)
            spacing: 20

            Column {
                width: parent.width
                spacing: 4

                SettingsText {
                    width: parent.width
                    text: page.title
                    font.pixelSize: SettingsTheme.pageTitleSize
                    font.weight: Font.DemiBold
                    Accessible.role: Accessible.Heading
                }

                SettingsText {
                    width: parent.width
                    visible: text !== ""
                    text: page.intro
                    color: SettingsTheme.textSecondary
                }
            }

            Column {
                id: groups

                width: parent.width
                spacing: 24
            }
        }
    }
}
