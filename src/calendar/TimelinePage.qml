pragma ComponentBehavior: Bound

import QtQuick
import Nimbarrow.Calendar
import Nimbarrow.Style

/// The hours of the day with its events; opens with the present in the middle.
Item {
    id: root

    required property DayTimeline timeline
    /// The event under the pointer, else the one that the Tab key has reached, while there is one.
    readonly property EventBlock pointedBlock: _hovered ?? _reached
    readonly property real scrollX: scroller.contentX

    property EventBlock _hovered: null
    property EventBlock _reached: null
    readonly property real _rowHeight: timeline.rowsUsed > 1 ? 19 : 40
    readonly property real _rowGap: 2
    readonly property real _overflowX: 6
    readonly property real _overflowY: 2

    function _reveal(block: Item) {
        const wanted = Math.min(block.x, Math.max(scrollX, block.x + block.width - width));
        scroller.contentX = Math.max(0, Math.min(wanted, scroller.contentWidth - width));
    }

    onScrollXChanged: timeline.setSight(scrollX, width)
    onWidthChanged: timeline.setSight(scrollX, width)

    Flickable {
        id: scroller

        anchors.fill: parent
        boundsBehavior: Flickable.StopAtBounds
        clip: true
        contentHeight: height
        contentWidth: root.timeline.length
        flickableDirection: Flickable.HorizontalFlick
        pixelAligned: true

        // Once there is a width to have a middle.
        Component.onCompleted: contentX = Math.max(0, Math.min(contentWidth - root.width, root.timeline.nowX - root.width / 2))

        // A click on an hour that is free.
        TapHandler {
            onDoubleTapped: point => root.timeline.createAt(scroller.contentItem.mapFromItem(root, root.mapFromGlobal(point.globalPosition)).x)
        }

        // A wheel that only turns one way moves the day as well.
        WheelHandler {
            onWheel: event => scroller.flick(event.angleDelta.y * 6, 0)
        }

        HourAxis {
            height: parent.height
            timeline: root.timeline
        }

        Repeater {
            model: root.timeline.blocks

            EventBlock {
                id: block

                height: root._rowHeight - (modelData.overflow ? root._overflowY : 0)
                timeline: root.timeline
                width: modelData.width
                x: modelData.x + (modelData.overflow ? root._overflowX : 0)
                y: (root._rowHeight + root._rowGap) * modelData.row + (modelData.overflow ? root._overflowY : 0)

                Component.onDestruction: {
                    if (root._hovered === block)
                        root._hovered = null;
                    if (root._reached === block)
                        root._reached = null;
                }
                onActiveFocusChanged: {
                    if (activeFocus) {
                        root._reveal(block);
                        root._reached = block;
                    } else if (root._reached === block) {
                        root._reached = null;
                    }
                }
                // Another may have taken its place already.
                onHoveredChanged: {
                    if (hovered)
                        root._hovered = block;
                    else if (root._hovered === block)
                        root._hovered = null;
                }
            }
        }

        Rectangle {
            color: Theme.now
            height: 44
            width: 1.5
            x: root.timeline.nowX

            Rectangle {
                anchors.horizontalCenter: parent.horizontalCenter
                color: Theme.now
                height: 5
                radius: 2.5
                width: 5
            }
        }
    }

    EdgeFades {
        flickable: scroller
    }
}
