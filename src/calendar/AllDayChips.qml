pragma ComponentBehavior: Bound

import QtQuick
import Nimbarrow.Calendar
import Nimbarrow.Style

/// The events of the whole day, side by side; scrolls where they do not all fit.
Item {
    id: root

    required property DayTimeline timeline

    implicitHeight: timeline.hasAllDay ? 14 : 0

    ListView {
        id: scroller

        anchors.fill: parent
        boundsBehavior: Flickable.StopAtBounds
        // Assistive programs know of those beside, too, though not of hundreds.
        cacheBuffer: 2000
        clip: true
        model: root.timeline.allDay
        orientation: ListView.Horizontal
        pixelAligned: true
        spacing: 4

        delegate: AllDayChip {
            timeline: root.timeline
        }

        // A wheel that only turns one way moves the row as well.
        WheelHandler {
            onWheel: event => scroller.flick(event.angleDelta.y * 6, 0)
        }
    }

    EdgeFade {
        beyond: scroller.contentX - scroller.originX
        edge: Qt.LeftEdge
        height: parent.height
        width: Theme.fadeLength
    }

    EdgeFade {
        anchors.right: parent.right
        beyond: scroller.contentWidth + scroller.originX - scroller.contentX - scroller.width
        edge: Qt.RightEdge
        height: parent.height
        width: Theme.fadeLength
    }
}
