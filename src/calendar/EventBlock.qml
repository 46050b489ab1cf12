import QtQuick
import Nimbarrow.Calendar
import Nimbarrow.Preferences
import Nimbarrow.Style

/// One event on the timeline. A press shows it in the calendar application.
Pressable {
    id: root

    required property DayTimeline timeline
    /// The event in its place.
    required property var modelData
    readonly property var event: modelData.event

    // Even half an hour has room for it, though not for the title beside it.
    readonly property bool _joinable: event.isMeeting && width >= 22
    readonly property real _titleEnd: _joinable ? 20 : 4

    Accessible.description: event.details
    name: event.title || L10n.texts[L10n.UntitledEvent]
    once: true
    ringDistance: 0

    onClicked: timeline.open(event)

    // Two that overlap stay two: what lies below does not shine through.
    Rectangle {
        anchors.fill: parent
        color: Theme.surface
        radius: Theme.smallRadius

        Rectangle {
            anchors.fill: parent
            color: root.event.color
            opacity: root.hovered ? 0.36 : 0.3
            radius: parent.radius
        }
    }

    Rectangle {
        color: root.event.color
        height: parent.height
        radius: 1
        width: Math.min(2, parent.width)
    }

    Line {
        anchors.fill: parent
        anchors.leftMargin: 6
        anchors.rightMargin: root._titleEnd
        font.pixelSize: Theme.metaText
        text: root.event.title
        visible: width >= 12
    }

    // Most events have none, and there may be many.
    Loader {
        id: joiner

        active: root._joinable
        anchors.right: parent.right
        anchors.verticalCenter: parent.verticalCenter
        height: Math.min(18, parent.height)
        width: 20

        sourceComponent: IconButton {
            help: L10n.texts[L10n.Join]
            once: true
            restingStrength: 0.92
            size: 9
            symbol: "video.fill"
        }
    }

    Connections {
        function onClicked() {
            root.timeline.join(root.event);
        }

        target: joiner.item
    }
}
