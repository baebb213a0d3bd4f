import QtQuick
import Kippo

/// What the mascot walks on: the lowest strip of the open panel.
Item {
    id: floor

    required property MascotStageViewModel stage

    onWidthChanged: stage.setFloorLength(width / kippo.size)

    MascotItem {
        id: kippo

        anchors.bottom: parent.bottom
        // Whole pixels, so that he does not shimmer.
        x: Math.round(floor.stage.place * floor.width - width / 2)
        size: 26
        state: floor.stage.state
        facesLeft: floor.stage.facesLeft
        reduced: Motion.reduced
        onStepped: floor.stage.step()
    }

    Connections {
        target: floor.stage

        function onBegun(): void {
            kippo.restart(floor.stage.age());
        }
    }
}
