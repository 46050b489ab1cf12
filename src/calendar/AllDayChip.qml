import QtQuick
import Nimbarrow.Calendar
import Nimbarrow.Style

/// An event of the whole day. A click shows it in the calendar application.
Item {
    id: root

    required property DayTimeline timeline
    required property var modelData

    Accessible.name: modelData.title
    Accessible.role: Accessible.Button
    implicitHeight: 14
    implicitWidth: Math.min(120, title.implicitWidth + 12)

    Accessible.onPressAction: timeline.open(modelData)
    Component.onDestruction: HelpText.withdraw(root)

    Rectangle {
        anchors.fill: parent
        color: root.modelData.color
        opacity: hover.hovered ? 0.3 : 0.18
        radius: 4
    }

    Line {
        id: title

        anchors.fill: parent
        anchors.leftMargin: 6
        anchors.rightMargin: 6
        font.pixelSize: Theme.metaText
        text: root.modelData.title
    }

    HoverHandler {
        id: hover

        // What is shortened can be read in full.
        onHoveredChanged: hovered && title.truncated ? HelpText.offer(root, root.modelData.title, Theme.helpDelay) : HelpText.withdraw(root)
    }

    TapHandler {
        gesturePolicy: TapHandler.ReleaseWithinBounds

        onSingleTapped: {
            HelpText.withdraw(root);
            root.timeline.open(root.modelData);
        }
    }
}
