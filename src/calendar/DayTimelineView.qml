pragma ComponentBehavior: Bound

import QtQuick
import Nimbarrow.Calendar
import Nimbarrow.Preferences
import Nimbarrow.Style

/// Today: a thin strip that unfolds into the timeline while the pointer is on it.
Item {
    id: root

    required property DayTimeline timeline
    required property bool unfolded
    /// Whether the surface is open.
    required property bool active
    /// Where the help about an event may stand.
    required property Item overlay

    signal unfoldRequested
    signal foldRequested

    readonly property bool _showsDay: timeline.access === CalendarAccess.Granted && !timeline.isEmpty

    Accessible.name: L10n.texts[L10n.TodaysCalendar]
    Accessible.role: Accessible.Grouping

    Component.onCompleted: timeline.setActive(active)
    Component.onDestruction: timeline.setActive(false)
    onActiveChanged: timeline.setActive(active)

    HoverHandler {
        // The strip is thin; the pointer need not hit it.
        margin: root.unfolded ? 0 : 6

        onHoveredChanged: {
            if (!hovered) {
                fold.restart();
                return;
            }
            fold.stop();
            root.unfoldRequested();
        }
    }

    Timer {
        id: fold

        interval: Theme.foldDelay

        onTriggered: root.foldRequested()
    }

    FadingContent {
        anchors.left: parent.left
        anchors.right: parent.right
        shown: !root.unfolded

        content: DayStrip {
            timeline: root.timeline
            width: root.width
        }
    }

    FadingContent {
        anchors.fill: parent
        shown: root.unfolded && !root._showsDay

        content: CalendarNotice {
            anchors.fill: parent
            timeline: root.timeline
        }
    }

    FadingContent {
        id: day

        anchors.fill: parent
        shown: root.unfolded && root._showsDay

        content: Item {
            anchors.fill: parent

            AllDayChips {
                id: chips

                timeline: root.timeline
                width: parent.width
            }

            TimelinePage {
                id: page

                height: 58
                timeline: root.timeline
                width: parent.width
                y: chips.height
            }

            EventTooltip {
                // Asked anew for each event: the day moves while it unfolds.
                readonly property point _origin: page.hoveredBlock ? root.mapToItem(root.overlay, 0, 0) : Qt.point(0, 0)

                details: page.hoveredBlock?.event.details ?? ""
                parent: root.overlay
                title: page.hoveredBlock?.event.title ?? ""
                visible: page.hoveredBlock !== null
                x: _origin.x + Math.min(Math.max(0, root.width - 200), Math.max(0, (page.hoveredBlock?.x ?? 0) - page.scrollX))
                y: _origin.y - height - 4
            }
        }
    }
}
