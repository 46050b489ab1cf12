pragma ComponentBehavior: Bound

import QtQuick
import QtQuick.Window

/// A help text that shows near its owner while the pointer rests there. It is drawn inside the surface, because
/// nothing of a panel can stand outside its window.
Loader {
    id: root

    required property Item owner
    required property string text
    /// The pointer is over the owner.
    required property bool wanted
    property int delay: Theme.helpDelay

    property bool _rested: false

    active: _rested && wanted && text !== ""
    visible: false

    onWantedChanged: if (!wanted) _rested = false

    Timer {
        interval: root.delay
        running: root.wanted && !root._rested

        onTriggered: root._rested = true
    }

    sourceComponent: Rectangle {
        id: tip

        readonly property Item _surface: root.owner.Window.contentItem
        // Read once: the tip goes away when its owner moves from under the pointer.
        readonly property point _below: root.owner.mapToItem(_surface, root.owner.width / 2, root.owner.height + 4)
        readonly property point _above: root.owner.mapToItem(_surface, root.owner.width / 2, -4)
        readonly property bool _fitsBelow: _below.y + height <= _surface.height - 8

        border.color: Theme.hoverFill
        border.width: 1
        color: Theme.surface
        height: label.height + 8
        parent: _surface
        radius: Theme.smallRadius
        width: label.width + 16
        x: Math.round(Math.max(16, Math.min(_surface.width - width - 16, _below.x - width / 2)))
        y: Math.round(_fitsBelow ? _below.y : Math.max(4, _above.y - height))
        z: 1

        Rectangle {
            anchors.fill: parent
            color: Theme.hoverFill
            radius: parent.radius
        }

        Text {
            id: label

            anchors.centerIn: parent
            color: Theme.title
            elide: Text.ElideRight
            font.pixelSize: Theme.metaText
            maximumLineCount: 8
            text: root.text
            textFormat: Text.PlainText
            width: Math.min(implicitWidth, 280)
            wrapMode: Text.Wrap
        }
    }
}
