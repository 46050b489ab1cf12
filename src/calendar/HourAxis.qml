pragma ComponentBehavior: Bound

import QtQuick
import Nimbarrow.Calendar
import Nimbarrow.Style

/// A line and a name for each hour of the day.
Item {
    id: root

    required property DayTimeline timeline

    Repeater {
        model: root.timeline.hours

        Item {
            required property int index
            required property string modelData

            height: root.height
            x: index * root.timeline.hourWidth

            Rectangle {
                color: Theme.restingFill
                height: parent.height
                width: 1
            }

            Line {
                anchors.bottom: parent.bottom
                color: Theme.secondary
                font.pixelSize: Theme.metaText
                height: 14
                text: parent.modelData
                x: 4
            }
        }
    }
}
