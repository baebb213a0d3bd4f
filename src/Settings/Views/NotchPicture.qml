import QtQuick
import Kippo

/// A small screen with the notch at its upper edge.
Item {
    id: picture

    property color notchColour: "#000000"
    property real corner: 12
    property real notchWidth: 70
    property real notchHeight: 18
    /// How far the notch reaches out at either side, for its lights.
    property real wing: 0
    property real lightSize: 8
    property int status: AgentLook.Status.Working
    property bool showsLights: wing > lightSize
    /// What the notch announces; it stands in both wings.
    property string agent
    property string saying

    Rectangle {
        anchors.fill: parent
        radius: picture.corner
        gradient: Gradient {
            GradientStop { position: 0; color: SettingsTheme.wallpaperTop }
            GradientStop { position: 1; color: SettingsTheme.wallpaperBottom }
        }
    }

    // Hangs from the edge: its upper corners are out of sight.
    Item {
        anchors.horizontalCenter: parent.horizontalCenter
        width: picture.notchWidth + 2 * picture.wing
        height: picture.notchHeight
        clip: true

        Rectangle {
            y: -radius
            width: parent.width
            height: parent.height + radius
            radius: Math.min(parent.height * 0.42, 12)
            color: picture.notchColour
        }

        StatusGlyph {
            x: picture.agent === "" ? (picture.wing + 4 - width) / 2 : 12
            anchors.verticalCenter: parent.verticalCenter
            visible: picture.showsLights
            width: picture.lightSize
            height: width
            status: picture.status
            color: Theme.statusColor(picture.status)
        }

        SettingsText {
            x: picture.lightSize + 18
            height: parent.height
            width: picture.wing - x
            verticalAlignment: Text.AlignVCenter
            text: picture.agent
            color: Theme.text
            font.pixelSize: 11
            font.weight: Font.DemiBold
            wrapMode: Text.NoWrap
            lineHeight: 1
            Accessible.ignored: true
        }

        SettingsText {
            anchors.right: parent.right
            anchors.rightMargin: 12
            height: parent.height
            verticalAlignment: Text.AlignVCenter
            text: picture.saying
            color: Theme.statusColor(picture.status)
            font.pixelSize: 11
            font.weight: Font.Medium
            wrapMode: Text.NoWrap
            lineHeight: 1
            Accessible.ignored: true
        }
    }
}
