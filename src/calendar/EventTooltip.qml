import QtQuick
import Nimbarrow.Style

/// Says all of the event that the pointer rests on.
Rectangle {
    id: root

    required property string title
    required property string details

    readonly property real _room: 200 - 2 * Theme.gap

    color: Theme.tooltip
    height: texts.height + 2 * Theme.gap
    radius: Theme.smallRadius
    width: texts.width + 2 * Theme.gap

    Column {
        id: texts

        x: Theme.gap
        y: Theme.gap

        Line {
            font.weight: Font.DemiBold
            text: root.title
            visible: text !== ""
            width: Math.min(implicitWidth, root._room)
        }

        Text {
            color: Theme.secondary
            elide: Text.ElideRight
            font.pixelSize: Theme.metaText
            maximumLineCount: 3
            text: root.details
            textFormat: Text.PlainText
            width: Math.min(implicitWidth, root._room)
            wrapMode: Text.Wrap
        }
    }
}
