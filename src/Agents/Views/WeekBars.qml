pragma ComponentBehavior: Bound
import QtQuick
import Kippo

/// The week's seven bars, today's in colour. The line above tells the amounts of the bar under the pointer, else the
/// week's.
Item {
    id: week

    required property UsageViewModel usage
    property string amounts

    PlainText {
        id: heading

        width: parent.width
        height: Theme.lineHeight
        text: week.amounts !== "" ? week.amounts : week.usage.weekText
        color: week.amounts !== "" ? Theme.textSecondary : Theme.textTertiary
        font.pixelSize: Theme.metaSize
    }

    Row {
        anchors.top: heading.bottom
        anchors.bottom: parent.bottom

        Accessible.role: Accessible.List
        Accessible.name: "The last seven days"

        Repeater {
            model: week.usage.week

            Item {
                id: day

                required property string letter
                required property string amounts
                required property real share
                required property bool isToday

                width: week.width / 7
                height: week.height - heading.height

                Accessible.role: Accessible.ListItem
                Accessible.name: amounts

                HoverHandler {
                    id: pointer

                    onHoveredChanged: {
                        if (hovered)
                            week.amounts = Qt.binding(() => day.amounts);
                        else if (week.amounts === day.amounts)
                            week.amounts = "";
                    }
                }

                Rectangle {
                    readonly property real room: parent.height - label.height - Theme.gap

                    anchors.horizontalCenter: parent.horizontalCenter
                    anchors.bottom: label.top
                    width: 16
                    height: Math.max(3, Math.round(room * day.share))
                    radius: Math.min(4, height / 2)
                    color: day.isToday ? Theme.working : pointer.hovered ? Theme.textTertiary : Theme.bar
                }

                PlainText {
                    id: label

                    anchors.bottom: parent.bottom
                    width: parent.width
                    height: Theme.lineHeight
                    horizontalAlignment: Text.AlignHCenter
                    text: day.letter
                    color: day.isToday ? Theme.text : Theme.textTertiary
                    font.pixelSize: Theme.metaSize
                    font.weight: day.isToday ? Font.DemiBold : Font.Normal
                }
            }
        }
    }
}
