pragma ComponentBehavior: Bound
import QtQuick
import Kippo

/// What agents left behind: processes that still run, then folders that can be built again.
Item {
    id: section

    required property LeftBehindViewModel leftBehind

    Flickable {
        id: view

        anchors.fill: parent
        contentWidth: width
        contentHeight: column.height
        boundsBehavior: Flickable.StopAtBounds
        clip: true

        Column {
            id: column

            width: view.width
            topPadding: Theme.unit
            bottomPadding: Theme.margin

            SectionHeading {
                width: parent.width
                title: "Still running"
                figures: section.leftBehind.processesText

                TextButton {
                    visible: section.leftBehind.countText !== ""
                    text: "Hide all"
                    help: "Leave these out from now on. The settings list what is hidden."
                    onClicked: section.leftBehind.hideAll()
                }

                TextButton {
                    visible: section.leftBehind.countText !== ""
                    text: section.leftBehind.stopAllLabel
                    help: "End all of these processes."
                    tone: section.leftBehind.isAskingToStopAll ? Theme.needsYou : Theme.textSecondary
                    onClicked: section.leftBehind.stopAll()
                }
            }

            PlainText {
                x: Theme.gap
                height: Theme.controlHeight
                visible: section.leftBehind.countText === ""
                text: "No process was left running."
                color: Theme.textSecondary
            }

            Repeater {
                model: section.leftBehind.processes

                LeftRunningLine {
                    width: column.width
                    leftBehind: section.leftBehind
                }
            }

            Item {
                width: 1
                height: Theme.gap
            }

            SectionHeading {
                width: parent.width
                title: "Leftovers"
                figures: section.leftBehind.leftoversText

                TextButton {
                    enabled: !section.leftBehind.isScanning
                    text: section.leftBehind.scanLabel
                    onClicked: section.leftBehind.scan()
                }
            }

            PlainText {
                x: Theme.gap
                width: parent.width - 2 * x
                bottomPadding: Theme.unit
                text: "Dependencies, build output, caches and worktrees in folders your agents worked in. Everything here can be rebuilt; it goes to the Trash, not straight to deletion."
                color: Theme.textTertiary
                font.pixelSize: Theme.metaSize
                maximumLineCount: 2
                wrapMode: Text.Wrap
            }

            PlainText {
                x: Theme.gap
                width: parent.width - 2 * x
                height: implicitHeight + Theme.gap
                visible: text !== ""
                text: section.leftBehind.errorText
                color: Theme.needsYou
                maximumLineCount: 2
                wrapMode: Text.Wrap
            }

            Item {
                width: parent.width
                height: Theme.shortRowHeight
                visible: section.leftBehind.undoText !== ""

                PlainText {
                    x: Theme.gap
                    width: undo.x - x - Theme.gap
                    height: parent.height
                    text: section.leftBehind.undoText
                    color: Theme.done
                }

                TextButton {
                    id: undo

                    anchors.right: parent.right
                    anchors.rightMargin: Theme.gap
                    anchors.verticalCenter: parent.verticalCenter
                    text: "Put back"
                    onClicked: section.leftBehind.undoTrash()
                }
            }

            PlainText {
                x: Theme.gap
                height: Theme.controlHeight
                visible: text !== ""
                text: section.leftBehind.emptyText
                color: Theme.textSecondary
            }

            Repeater {
                model: section.leftBehind.leftovers

                LeftoverLine {
                    width: column.width
                    leftBehind: section.leftBehind
                }
            }
        }
    }

    FocusScroll {
        flickable: view
    }

    ScrollFade {
        flickable: view
    }

    ScrollHint {
        anchors.right: parent.right
        anchors.rightMargin: -Theme.unit - 2
        flickable: view
    }
}
