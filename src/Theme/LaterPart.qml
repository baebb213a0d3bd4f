import QtQuick

/// A part of a window that its first picture does without. It is made at once when it is needed, or before that, a bit at
/// a time, after `prepare`.
Loader {
    id: later

    /// Of this folder of views.
    required property string file
    /// What the part is made with.
    required property var properties
    property bool isNeeded: false

    function prepare(): void {
        if (status === Loader.Null)
            setSource(file, properties);
    }

    function make(): void {
        if (status === Loader.Ready)
            return;
        // What has begun cannot be hurried on: it would lose its properties.
        source = "";
        asynchronous = false;
        prepare();
    }

    asynchronous: true
    onIsNeededChanged: if (isNeeded)
        make()
    Component.onCompleted: if (isNeeded)
        make()
}
