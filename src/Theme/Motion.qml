pragma Singleton
import QtQuick

/// Durations by meaning, in milliseconds. The panel's own shape moves on a spring (NotchMotion), not on these.
QtObject {
    /// The person asked for less motion: everything happens at once.
    property bool reduced: false

    /// Contents appear once the shape has made room for them.
    readonly property int revealDelay: reduced ? 0 : 110
    readonly property int reveal: reduced ? 0 : 180
    /// Contents leave before the shape closes over them.
    readonly property int conceal: reduced ? 0 : 90
    /// A row finds its new place in the list.
    readonly property int shift: reduced ? 0 : 240
    /// A row opens or folds up.
    readonly property int unfold: reduced ? 0 : 200
    /// Small answers to the pointer.
    readonly property int touch: reduced ? 0 : 100
}
