import QtQuick
import Kippo

/// The settings window: the pages' names on the left, the chosen page on the right. A page is an element and its name in
/// the sidebar's `pages`.
FocusScope {
    id: settings

    required property PreferencesViewModel preferences
    required property AgentSettingsViewModel agents
    /// The page on screen, by its name.
    property string shownPage: "General"

    function turn(steps: int) {
        const count = sidebar.pages.length;
        sidebar.current = (sidebar.current + steps + count) % count;
    }

    onShownPageChanged: {
        for (let i = 0; i < sidebar.pages.length; ++i) {
            if (sidebar.pages[i].title === shownPage)
                sidebar.current = i;
        }
    }

    Binding {
        target: SettingsTheme
        property: "dark"
        value: settings.preferences.isDark
    }

    Binding {
        target: Motion
        property: "reduced"
        value: settings.preferences.reducedMotion
    }

    Connections {
        target: settings.Window.window

        function onActiveChanged() {
            if (settings.Window.active)
                settings.agents.refresh();
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
        pages: [generalPage, notchPage, agentsPage]
    }

    Item {
        anchors.left: sidebar.right
        anchors.right: parent.right
        height: parent.height

        GeneralSettingsPage {
            id: generalPage

            visible: sidebar.shown === generalPage
            preferences: settings.preferences
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
    }
}
