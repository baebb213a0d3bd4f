import QtQuick
import QtQuick.Templates as T
import Kippo

/// A whole number: typed, or changed by its buttons, the arrow keys (Page Up and Page Down take larger steps) and the
/// wheel. What is typed counts once it is entered or left, and is brought within the bounds.
GroupRow {
    id: row

    required property string title
    property string note
    required property int value
    property int from: 1
    property int to: 180
    property int step: 1
    property string unit

    signal changed(int value)

    opacity: enabled ? 1 : 0.45
    implicitHeight: Math.max(48, words.implicitHeight + 22)

    Column {
        id: words

        x: SettingsTheme.rowMargin
        anchors.verticalCenter: parent.verticalCenter
        width: box.x - x - 16
        spacing: 2

        SettingsText {
            width: parent.width
            text: row.title
            Accessible.ignored: true
        }

        SettingsText {
            width: parent.width
            visible: text !== ""
            text: row.note
            color: SettingsTheme.textTertiary
            font.pixelSize: SettingsTheme.noteSize
            Accessible.ignored: true
        }
    }

    T.SpinBox {
        id: box

        anchors.right: unit.left
        anchors.rightMargin: unit.text === "" ? 0 : 8
        anchors.verticalCenter: parent.verticalCenter
        width: 96
        height: SettingsTheme.controlHeight
        from: row.from
        to: row.to
        stepSize: row.step
        value: row.value
        editable: true
        wheelEnabled: activeFocus
        hoverEnabled: true
        leftPadding: 28
        rightPadding: 28
        validator: IntValidator { bottom: 0; top: 9999 }
        Accessible.name: row.title
        Accessible.description: row.unit
        onValueModified: {
            row.changed(value);
            // Shows what came about, also where it is something else.
            value = Qt.binding(() => row.value);
        }
        Keys.onPressed: event => {
            const large = event.key === Qt.Key_PageUp ? 1 : event.key === Qt.Key_PageDown ? -1 : 0;
            if (large === 0 || event.modifiers & Qt.ControlModifier)
                return;
            event.accepted = true;
            row.changed(Math.max(row.from, Math.min(row.to, row.value + large * 5 * row.step)));
        }

        background: Rectangle {
            radius: SettingsTheme.controlCorner
            color: SettingsTheme.field
            border.width: box.activeFocus ? 2 : 1
            border.color: box.activeFocus ? SettingsTheme.accentText : SettingsTheme.border
        }

        contentItem: TextInput {
            text: box.displayText
            font.family: Theme.family
            font.pixelSize: SettingsTheme.bodySize
            color: SettingsTheme.text
            selectionColor: SettingsTheme.accent
            selectedTextColor: SettingsTheme.accentInk
            horizontalAlignment: Qt.AlignHCenter
            verticalAlignment: Qt.AlignVCenter
            selectByMouse: true
            validator: box.validator
            inputMethodHints: Qt.ImhDigitsOnly
            Accessible.ignored: true
        }

        up.indicator: StepSign {
            x: box.width - width
            sign: Icon.Plus
            isUnder: box.up.hovered
            isDown: box.up.pressed
            canStep: box.value < box.to
        }

        down.indicator: StepSign {
            sign: Icon.Minus
            isUnder: box.down.hovered
            isDown: box.down.pressed
            canStep: box.value > box.from
        }
    }

    SettingsText {
        id: unit

        anchors.right: parent.right
        anchors.rightMargin: SettingsTheme.rowMargin
        anchors.verticalCenter: parent.verticalCenter
        text: row.unit
        color: SettingsTheme.textTertiary
        font.pixelSize: SettingsTheme.noteSize
        wrapMode: Text.NoWrap
        Accessible.ignored: true
    }
}
