import QtQuick

/// Lets what goes on below a list's edge sink into the panel's black; gone at the list's end.
Rectangle {
    required property Flickable flickable

    anchors.left: flickable.left
    anchors.right: flickable.right
    anchors.bottom: flickable.bottom
    height: Theme.rowHeight / 2
    visible: !flickable.atYEnd
    gradient: Gradient {
        GradientStop { position: 0; color: "transparent" }
        GradientStop { position: 1; color: Theme.surface }
    }
}
