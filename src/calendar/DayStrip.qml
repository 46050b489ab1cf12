pragma ComponentBehavior: Bound

import QtQuick
import Nimbarrow.Calendar
import Nimbarrow.Style

/// The day in one thin line: a dot for each event, one at its beginning for those of the whole day, and a red one for
/// now.
Item {
    id: root

    required property DayTimeline timeline

    implicitHeight: 8

    function _place(x: real): real {
        return root.width * x / root.timeline.length;
    }

    Rectangle {
        anchors.verticalCenter: parent.verticalCenter
        color: Theme.hoverFill
        height: 2
        radius: 1
        width: root.width
    }

    Rectangle {
        color: visible ? root.timeline.allDay[0].color : "transparent"
        height: 4
        radius: 2
        visible: root.timeline.access === CalendarAccess.Granted && root.timeline.hasAllDay
        width: 4
        y: 2
    }

    Repeater {
        model: root.timeline.access === CalendarAccess.Granted ? root.timeline.marks : []

        Rectangle {
            required property var modelData

            color: modelData.event.color
            height: 4
            radius: 2
            width: 4
            x: root._place(modelData.x) - 2
            y: 2
        }
    }

    Rectangle {
        color: Theme.now
        height: 6
        radius: 3
        visible: root.timeline.access === CalendarAccess.Granted
        width: 6
        x: root._place(root.timeline.nowX) - 3
        y: 1
    }
}
