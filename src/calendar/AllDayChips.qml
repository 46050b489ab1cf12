pragma ComponentBehavior: Bound

import QtQuick
import Nimbarrow.Calendar
import Nimbarrow.Style

/// The events of the whole day, side by side; scrolls where they do not all fit.
Item {
    id: root

    required property DayTimeline timeline

    implicitHeight: timeline.hasAllDay ? 14 : 0

    // Not a list view: the Tab key goes through its rows in the order in which they were made.
    Flickable {
        id: scroller

        anchors.fill: parent
        boundsBehavior: Flickable.StopAtBounds
        clip: true
        contentHeight: height
        contentWidth: chips.width
        flickableDirection: Flickable.HorizontalFlick
        pixelAligned: true

        // A wheel that only turns one way moves the row as well.
        WheelHandler {
            onWheel: event => scroller.flick(event.angleDelta.y * 6, 0)
        }

        Row {
            id: chips

            spacing: 4

            Repeater {
                model: root.timeline.allDay

                AllDayChip {
                    id: chip

                    timeline: root.timeline

                    // What the Tab key has reached is in sight.
                    onActiveFocusChanged: {
                        const end = chip.x + chip.width + Theme.fadeLength - scroller.width;
                        const wanted = Math.min(chip.x - Theme.fadeLength, Math.max(scroller.contentX, end));
                        if (activeFocus)
                            scroller.contentX = Math.max(0, Math.min(wanted, scroller.contentWidth - scroller.width));
                    }
                }
            }
        }
    }

    EdgeFades {
        flickable: scroller
    }
}
