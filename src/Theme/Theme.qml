pragma Singleton
import QtQuick

/// Colours, type and spacing by meaning. Every colour of text reaches 4.5:1 on the panel and its hovered rows, whichever
/// ground the person chose.
QtObject {
    /// The panel itself, one of the dark grounds to choose from. Black passes for the screen's own edge.
    property color surface: "#000000"
    /// The person's colour, made light enough to be read: for what is chosen, and what the keyboard is at.
    property color accent: "#5aa9ff"

    /// Everything else lies on the surface as light does.
    function lifted(share: real): color {
        return Qt.tint(surface, Qt.rgba(0.94, 0.94, 1, share));
    }

    readonly property color hover: lifted(0.085)
    readonly property color hairline: lifted(0.13)
    readonly property color chip: lifted(0.12)
    /// What can be clicked, and under the pointer.
    readonly property color control: lifted(0.145)
    readonly property color controlHover: lifted(0.21)
    readonly property color focus: accent
    readonly property color bar: lifted(0.245)

    readonly property color text: "#f5f5f7"
    readonly property color textSecondary: "#bcbcc2"
    readonly property color textTertiary: lifted(0.58)

    /// One accent per meaning; StatusLight gives each a shape of its own as well.
    readonly property color needsYou: "#ffb340"
    readonly property color working: "#5aa9ff"
    readonly property color done: "#4fd08f"
    readonly property color idle: textTertiary

    /// A phase of focus, and a break from it.
    readonly property color focusing: "#ff8a70"
    readonly property color resting: "#6fd3c1"

    function statusColor(status: int): color {
        switch (status) {
        case AgentLook.Status.NeedsYou: return needsYou;
        case AgentLook.Status.Working: return working;
        case AgentLook.Status.Done: return done;
        default: return idle;
        }
    }

    readonly property string family: "Inter"
    readonly property int titleSize: 13
    readonly property int bodySize: 12
    readonly property int metaSize: 11
    readonly property int figureSize: 26
    readonly property int headlineSize: 18
    readonly property int clockSize: 32

    /// Everything stands on a grid of 4.
    readonly property int unit: 4
    readonly property int gap: 8
    readonly property int margin: 16
    readonly property int corner: 10
    readonly property int rowHeight: 52
    readonly property int badgeSize: 28
    readonly property int chipHeight: 16
    readonly property int controlHeight: 22
    readonly property int lineHeight: 18
    readonly property int shortRowHeight: 30
    /// The column of what names a fact, such as "Folder".
    readonly property int labelWidth: 68
    readonly property int smallBadgeSize: 16
    readonly property int lightSize: 10
    /// How far the closed notch's concave shoulders reach in from its ends.
    readonly property int shoulderReach: 10
}
