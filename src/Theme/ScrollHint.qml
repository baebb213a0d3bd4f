import QtQuick

/// Says how far a list has been scrolled: a thin bar beside it, there only when there is more than fits.
Rectangle {
    id: hint

    required property Flickable flickable
    readonly property real track: flickable.height - 2 * Theme.unit
    readonly property real share: flickable.visibleArea.heightRatio

    visible: share < 1
    width: 3
    height: Math.max(16, track * share)
    y: flickable.y + Theme.unit + (track - height) * flickable.visibleArea.yPosition / Math.max(0.001, 1 - share)
    radius: width / 2
    color: Theme.textTertiary
    opacity: flickable.moving ? 0.8 : 0.35

    Behavior on opacity {
        NumberAnimation { duration: Motion.touch }
    }
}
