import QtQuick
import Kippo

/// The focus page: the timer, or the stretches while they run.
FocusScope {
    id: page

    required property FocusViewModel timer
    required property StretchViewModel stretch

    focus: true

    StretchScreen {
        anchors.fill: parent
        visible: page.stretch.isOn
        focus: visible
        stretch: page.stretch
    }

    TimerScreen {
        anchors.fill: parent
        visible: !page.stretch.isOn
        focus: visible
        timer: page.timer
        onStretch: page.stretch.begin()
    }
}
