import QtQuick
import Nimbarrow.Calendar
import Nimbarrow.Preferences
import Nimbarrow.Style

/// An event of the whole day. A press shows it in the calendar application.
Pressable {
    id: root

    required property DayTimeline timeline
    required property var modelData

    Accessible.description: modelData.details
    // What is shortened can be read in full.
    help: title.truncated ? modelData.title : ""
    implicitHeight: 14
    implicitWidth: Math.min(120, Math.max(14, title.implicitWidth + 12))
    name: modelData.title || L10n.texts[L10n.UntitledEvent]
    once: true
    ringDistance: 0
    ringRadius: 4

    onClicked: timeline.open(modelData)

    Rectangle {
        anchors.fill: parent
        color: root.modelData.color
        opacity: root.hovered ? 0.3 : 0.18
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
}
