import QtQuick

/// Scrolls to what the keyboard comes to.
Item {
    id: scroll

    required property Flickable flickable
    readonly property Item focused: Window.activeFocusItem

    onFocusedChanged: {
        let above = focused;
        while (above && above !== flickable.contentItem)
            above = above.parent;
        if (!above)
            return;
        const top = focused.mapToItem(flickable.contentItem, 0, 0).y - Theme.gap;
        const bottom = top + focused.height + 2 * Theme.gap;
        if (top < flickable.contentY)
            flickable.contentY = Math.max(flickable.originY, top);
        else if (bottom > flickable.contentY + flickable.height)
            flickable.contentY = bottom - flickable.height;
    }
}
