pragma ComponentBehavior: Bound

import QtQuick
import Nimbarrow.Preferences
import Nimbarrow.Style

/// Says that what is dragged over the surface may be dropped here.
FadingContent {
    id: root

    fadeDuration: Theme.hintDuration
    fadeEasing: Easing.OutQuad

    content: Item {
        anchors.fill: parent

        DashedFrame {
            anchors.fill: parent
            color: Theme.secondary
            lineWidth: 1.5
            radius: 12
        }

        Column {
            anchors.centerIn: parent
            spacing: Theme.gap

            Symbol {
                anchors.horizontalCenter: parent.horizontalCenter
                name: "tray.and.arrow.down"
                size: 22
            }

            Line {
                anchors.horizontalCenter: parent.horizontalCenter
                font.pixelSize: Theme.rowText
                font.weight: Font.Medium
                text: L10n.texts[L10n.DropHere]
            }
        }
    }
}
