import QtQuick
import Kippo

/// The settings window: the pages' names on the left, the chosen page on the right. A page is an element and its name in
/// the sidebar's `pages`.
FocusScope {
    id: settings

    required property Appearance appearance
    required property PreferencesViewModel preferences
    required property LoginViewModel login
    required property HotKeysViewModel hotKeys
    required property SoundsViewModel sounds
    required property FocusSettingsViewModel focusSettings
    required property AboutViewModel about
    required property AgentSettingsViewModel agents
    /// Something that the person has to know, whatever page is open; put away once and for all.
    property string notice
    /// The page on screen, by its name.
    property string shownPage: "General"

    function turn(steps: int) {
        const count = sidebar.pages.length;
        sidebar.current = (sidebar.current + steps + count) % count;
    }

    function showReport() {
        settings.shownPage = aboutPage.title;
        sidebar.current = sidebar.pages.length - 1;
        aboutPage.showReport();
    }

    onShownPageChanged: {
        for (let i = 0; i < sidebar.pages.length; ++i) {
            if (sidebar.pages[i].title === shownPage)
                sidebar.current = i;
        }
    }

    AppearanceBindings {
        appearance: settings.appearance
    }

    Connections {
        target: settings.Window.window

        function onActiveChanged() {
            if (settings.Window.active) {
                settings.agents.refresh();
                settings.login.refresh();
            }
        }
    }

    Shortcut {
        sequences: ["Ctrl+W"]
        onActivated: settings.Window.window.close()
    }

    Shortcut {
        sequences: ["Ctrl+PgDown", "Ctrl+Tab"]
        onActivated: settings.turn(1)
    }

    Shortcut {
        sequences: ["Ctrl+PgUp", "Ctrl+Shift+Tab"]
        onActivated: settings.turn(-1)
    }

    Rectangle {
        anchors.fill: parent
        color: SettingsTheme.window
    }

    SettingsSidebar {
        id: sidebar

        width: SettingsTheme.sidebarWidth
        height: parent.height
        pages: [generalPage, notchPage, agentsPage, alertsPage, focusPage, aboutPage]
    }

    Item {
        id: banner

        anchors.left: sidebar.right
        anchors.right: parent.right
        height: settings.notice === "" ? 0 : words.height + 16

        NoticeBanner {
            id: words

            x: SettingsTheme.pageMargin
            y: 16
            width: parent.width - 2 * x
            visible: settings.notice !== ""
            text: settings.notice
            onDismissed: settings.notice = ""
        }
    }

    Item {
        anchors.left: sidebar.right
        anchors.right: parent.right
        anchors.top: banner.bottom
        anchors.bottom: parent.bottom

        GeneralSettingsPage {
            id: generalPage

            visible: sidebar.shown === generalPage
            preferences: settings.preferences
            login: settings.login
            hotKeys: settings.hotKeys
        }

        NotchSettingsPage {
            id: notchPage

            visible: sidebar.shown === notchPage
            preferences: settings.preferences
        }

        AgentSettingsPage {
            id: agentsPage

            visible: sidebar.shown === agentsPage
            agents: settings.agents
        }

        AlertSettingsPage {
            id: alertsPage

            visible: sidebar.shown === alertsPage
            preferences: settings.preferences
            sounds: settings.sounds
        }

        FocusSettingsPage {
            id: focusPage

            visible: sidebar.shown === focusPage
            focusSettings: settings.focusSettings
        }

        AboutSettingsPage {
            id: aboutPage

            visible: sidebar.shown === aboutPage
            about: settings.about
        }
    }
}
