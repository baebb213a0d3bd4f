import QtQuick
import Kippo

/// What this is, played on a small screen.
WelcomeStep {
    id: step

    title: "Hello, I’m Kippo"
    words: "I live in the strip at the top of your screen. One look tells you which of your coding agents work, which need "
           + "you, and which are done."

    picture: WelcomePicture {
        anchors.horizontalCenter: parent ? parent.horizontalCenter : undefined
        isPlaying: step.visible
    }
}
