pragma ComponentBehavior: Bound

import QtQuick
import Nimbarrow.Calendar
import Nimbarrow.Preferences
import Nimbarrow.Style

/// Today: a thin strip that unfolds into the timeline while the pointer is on it, or the Tab key in it.
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

    readonly property bool _isWanted: hover.hovered || _hasKeys
    readonly property bool _hasKeys: {
        let item = Window.activeFocusItem;
        while (item && item !== root)
            item = item.parent;
        return item !== null;
    }
    readonly property bool _showsDay: timeline.access === CalendarAccess.Granted && !timeline.isEmpty

    Accessible.name: L10n.texts[L10n.TodaysCalendar]
    Accessible.role: Accessible.Grouping
    activeFocusOnTab: true

    Component.onCompleted: timeline.setActive(active)
    Component.onDestruction: timeline.setActive(false)
    onActiveChanged: timeline.setActive(active)
    on_IsWantedChanged: {
        if (!_isWanted) {
            fold.restart();
            return;
        }
        fold.stop();
        unfoldRequested();
    }

    FocusRing {
        radius: Theme.smallRadius
        shown: root.activeFocus
        z: 1
    }

    HoverHandler {
        id: hover

        // The strip is thin; the pointer need not hit it.
        margin: root.unfolded ? 0 : 6
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
                readonly property point _origin: page.pointedBlock ? root.mapToItem(root.overlay, 0, 0) : Qt.point(0, 0)

                details: page.pointedBlock?.event.details ?? ""
                parent: root.overlay
                title: page.pointedBlock?.event.title ?? ""
                visible: page.pointedBlock !== null
                x: _origin.x + Math.min(Math.max(0, root.width - 200), Math.max(0, (page.pointedBlock?.x ?? 0) - page.scrollX))
                y: _origin.y - height - 4
            }
        }
    }
}
