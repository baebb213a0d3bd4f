import QtQuick
import Kippo

/// The notch's day in a few seconds: agents work, one needs the person, one is done. Where motion is reduced, it stands
/// at the middle of it.
Item {
    id: play

    property bool isPlaying: true
    /// 0 closed, 1 at work, 2 somebody is needed, 3 done.
    property int act: Motion.reduced ? 2 : 0

    width: 500
    height: 270
    Accessible.role: Accessible.Graphic
    Accessible.name: "A screen with the notch at its upper edge, which tells that an agent needs you"

    Timer {
        interval: play.act === 0 ? 900 : play.act === 1 ? 2200 : 3000
        running: play.isPlaying && !Motion.reduced
        repeat: true
        onTriggered: play.act = play.act === 3 ? 1 : play.act + 1
    }

    NotchPicture {
        anchors.fill: parent
        notchWidth: 104
        notchHeight: 28
        lightSize: 9
        wing: play.act === 0 ? 0 : play.act === 1 ? 36 : 112
        status: play.act === 2 ? AgentLook.Status.NeedsYou
                               : play.act === 3 ? AgentLook.Status.Done : AgentLook.Status.Working
        agent: play.act > 1 ? "Claude Code" : ""
        saying: play.act === 1 ? "2" : play.act === 2 ? "needs you" : play.act === 3 ? "done" : ""

        Behavior on wing {
            NumberAnimation { duration: Motion.shift; easing.type: Easing.OutCubic }
        }
    }

    MascotItem {
        id: kippo

        anchors.horizontalCenter: parent.horizontalCenter
        anchors.bottom: parent.bottom
        anchors.bottomMargin: 14
        size: 108
        reduced: Motion.reduced
        Accessible.ignored: true
    }

    onActChanged: {
        kippo.state = act === 2 ? MascotItem.Panic : act === 3 ? MascotItem.Cheer : MascotItem.Idle;
        kippo.restart();
    }
}
