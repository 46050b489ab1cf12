pragma ComponentBehavior: Bound

import QtQuick
import Nimbarrow.Style

/// Draws the help text near what it is about. Nothing of a panel can stand outside its window, so this lies over
/// everything else in it.
FadingContent {
    id: root

    /// What the texts are about is covered, or goes.
    property bool muted: false

    shown: HelpText.shown && HelpText.owner !== null && !muted

    content: Rectangle {
        id: tip

        // Both are read once: a text that fades away stays where it was.
        property point _below
        property point _above

        readonly property bool _fitsBelow: _below.y + height <= root.height - Theme.gap

        border.color: Theme.hoverFill
        border.width: 1
        color: Theme.surface
        height: label.height + 8
        radius: Theme.smallRadius
        width: label.width + 16
        x: Math.round(Math.max(Theme.insetY, Math.min(root.width - width - Theme.insetY, _below.x - width / 2)))
        y: Math.round(_fitsBelow ? _below.y : Math.max(4, _above.y - height))

        Component.onCompleted: {
            const owner = HelpText.owner;
            _below = root.mapFromItem(owner, owner.width / 2, owner.height + 2);
            _above = root.mapFromItem(owner, owner.width / 2, -2);
            label.text = HelpText.text;
        }

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
            textFormat: Text.PlainText
            width: Math.min(implicitWidth, 280)
            wrapMode: Text.Wrap
        }
    }
}
