import QtQuick
import QtQuick.Templates as T

/// A scroll bar that is there only where there is something to scroll.
T.ScrollBar {
    id: bar

    implicitWidth: 10
    padding: 2
    visible: size < 1
    minimumSize: 0.08

    contentItem: Rectangle {
        implicitWidth: 6
        radius: 3
        color: SettingsTheme.textTertiary
        opacity: bar.pressed || bar.hovered ? 0.8 : bar.active ? 0.55 : 0.3
    }
}
