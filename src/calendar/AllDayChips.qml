pragma ComponentBehavior: Bound

import QtQuick
import Nimbarrow.Calendar
import Nimbarrow.Style

/// The events of the whole day, side by side; scrolls where they do not all fit.
Item {
    id: root

    required property DayTimeline timeline

    implicitHeight: timeline.hasAllDay ? 14 : 0

    Flickable {
        id: scroller

        anchors.fill: parent
        boundsBehavior: Flickable.StopAtBounds
        clip: true
        contentHeight: height
        contentWidth: row.width
        flickableDirection: Flickable.HorizontalFlick
        pixelAligned: true

        // A wheel that only turns one way moves the row as well.
        WheelHandler {
            onWheel: event => scroller.flick(event.angleDelta.y * 6, 0)
        }

        Row {
            id: row

            spacing: 4

            Repeater {
                model: root.timeline.allDay

                AllDayChip {
                    timeline: root.timeline
                }
            }
        }
    }

    EdgeFade {
        beyond: scroller.contentX
        edge: Qt.LeftEdge
        height: parent.height
        width: Theme.fadeLength
    }

    EdgeFade {
        anchors.right: parent.right
        beyond: scroller.contentWidth - scroller.contentX - scroller.width
        edge: Qt.RightEdge
        height: parent.height
        width: Theme.fadeLength
    }
}
