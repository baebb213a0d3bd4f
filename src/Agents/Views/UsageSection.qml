pragma ComponentBehavior: Bound
import QtQuick
import Kippo

/// What agents used: today at the left, the week in the middle, today's projects at the right.
Item {
    id: section

    required property UsageViewModel usage

    Column {
        id: today

        x: Theme.gap
        y: Theme.gap
        width: 216

        PlainText {
            height: Theme.lineHeight
            text: "Today"
            color: Theme.textTertiary
            font.pixelSize: Theme.metaSize
        }

        PlainText {
            width: parent.width
            height: 38
            text: section.usage.todayCost
            font.pixelSize: Theme.figureSize
            font.weight: Font.DemiBold
        }

        PlainText {
            width: parent.width
            height: Theme.lineHeight
            text: section.usage.todayTokens
            color: Theme.textSecondary
        }

        PlainText {
            width: parent.width
            topPadding: Theme.gap
            text: section.usage.fiveHours
            color: Theme.textSecondary
            font.pixelSize: Theme.metaSize
            maximumLineCount: 2
            wrapMode: Text.Wrap
        }
    }

    PlainText {
        anchors.left: today.left
        anchors.bottom: parent.bottom
        anchors.bottomMargin: Theme.margin
        width: today.width - Theme.margin
        text: "What the tokens of Claude Code would cost at API prices."
        color: Theme.textTertiary
        font.pixelSize: Theme.metaSize
        maximumLineCount: 2
        wrapMode: Text.Wrap
    }

    WeekBars {
        id: week

        anchors.left: today.right
        anchors.leftMargin: Theme.gap
        y: today.y
        width: 176
        height: parent.height - y - Theme.margin
        usage: section.usage
    }

    PlainText {
        id: heading

        anchors.left: projects.left
        y: today.y
        height: Theme.lineHeight
        text: "Today by project"
        color: Theme.textTertiary
        font.pixelSize: Theme.metaSize
    }

    ListView {
        id: projects

        anchors.left: week.right
        anchors.leftMargin: Theme.margin + Theme.gap
        anchors.right: parent.right
        anchors.rightMargin: Theme.gap
        anchors.top: heading.bottom
        anchors.bottom: parent.bottom
        anchors.bottomMargin: Theme.margin
        clip: true
        boundsBehavior: Flickable.StopAtBounds
        model: section.usage.projects
        delegate: ProjectLine {
            width: ListView.view.width
        }

        Accessible.role: Accessible.List
        Accessible.name: heading.text
    }

    ScrollHint {
        anchors.right: parent.right
        anchors.rightMargin: -Theme.unit - 2
        flickable: projects
    }

    PlainText {
        anchors.left: projects.left
        anchors.right: projects.right
        y: projects.y
        height: Theme.lineHeight * 1.5
        visible: text !== ""
        text: section.usage.statusText
        color: Theme.textSecondary
    }
}
