pragma Singleton
import QtQuick

/// The settings window's colours and sizes by meaning, in the desktop's light or dark look. Every colour of text reaches
/// 4.5:1 on the grounds that it stands on. Type and the grid are those of Theme.
QtObject {
    id: theme

    property bool dark: false

    /// What a mark on a ground of this colour is drawn in.
    function inkOn(ground: color): color {
        return 0.3 * ground.r + 0.59 * ground.g + 0.11 * ground.b > 0.62 ? "#1d1d1f" : "#ffffff";
    }

    readonly property color window: dark ? "#1e1e20" : "#f5f5f7"
    readonly property color sidebar: dark ? "#252528" : "#ebebef"
    readonly property color card: dark ? "#29292c" : "#ffffff"
    readonly property color sheet: dark ? "#242427" : "#fbfbfc"
    readonly property color hairline: dark ? "#39393e" : "#e4e4e8"
    readonly property color border: dark ? "#3f3f45" : "#d9d9de"
    readonly property color dim: "#66000000"

    readonly property color text: dark ? "#f5f5f7" : "#1d1d1f"
    readonly property color textSecondary: dark ? "#b8b8bd" : "#56565c"
    readonly property color textTertiary: dark ? "#a0a0a6" : "#68686e"

    /// The window's own bindings set these by the accent that the person chose.
    property color accent: "#1a63d6"
    property color accentInk: "#ffffff"
    /// Text and outlines in the accent.
    property color accentText: "#1558c2"
    /// What the accent "system" stands for.
    property color desktopAccent: accent
    readonly property color accentHover: Qt.darker(accent, 1.06)
    readonly property color accentPressed: Qt.darker(accent, 1.14)

    readonly property color control: dark ? "#3a3a3f" : "#ffffff"
    readonly property color controlHover: dark ? "#44444a" : "#f2f2f5"
    readonly property color controlPressed: dark ? "#323237" : "#e6e6ea"
    readonly property color hover: dark ? "#14ffffff" : "#0a000000"
    readonly property color selected: dark ? "#3a3a40" : "#dcdce2"
    readonly property color trackOff: dark ? "#5c5c63" : "#8e8e96"
    readonly property color dot: dark ? "#5c5c63" : "#c4c4ca"
    readonly property color field: dark ? "#1f1f22" : "#ffffff"

    readonly property color good: dark ? "#4fd08f" : "#197a43"
    readonly property color waiting: dark ? "#ffb340" : "#935400"
    readonly property color warning: dark ? "#ff8a80" : "#b3261e"
    readonly property color warningGround: dark ? "#3a2424" : "#fdecea"
    readonly property color warningBorder: dark ? "#5b3532" : "#f3c9c5"

    /// The small pictures of a screen, which are the same in both looks.
    readonly property color wallpaperTop: "#e9c7ae"
    readonly property color wallpaperBottom: "#6f93b8"
    readonly property color swatchEdge: dark ? "#33ffffff" : "#26000000"

    readonly property color added: dark ? "#93e2ae" : "#10552a"
    readonly property color addedGround: dark ? "#1b3324" : "#e5f6ea"
    readonly property color removed: dark ? "#ffa39b" : "#8a1c16"
    readonly property color removedGround: dark ? "#3b2222" : "#fdeae8"

    readonly property int pageTitleSize: 22
    readonly property int headingSize: 13
    readonly property int bodySize: 13
    readonly property int noteSize: 12
    readonly property string codeFamily: "monospace"
    readonly property int codeSize: 11

    readonly property int sidebarWidth: 184
    readonly property int pageMargin: 28
    readonly property int pageWidth: 640
    readonly property int rowMargin: 14
    readonly property int badgeSize: 32
    /// Where a row's text begins when a badge stands before it.
    readonly property int textIndent: rowMargin + badgeSize + 12
    readonly property int controlHeight: 28
    readonly property int corner: 10
    readonly property int controlCorner: 7
}
