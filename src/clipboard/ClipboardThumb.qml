pragma ComponentBehavior: Bound

import QtQuick
import Nimbarrow.Clipboard
import Nimbarrow.Preferences
import Nimbarrow.Style

/// An image of the history in small.
ClipboardEntry {
    id: root

    implicitHeight: Theme.thumbHeight
    implicitWidth: Theme.thumbWidth

    Rectangle {
        anchors.fill: parent
        color: Theme.restingFill
        radius: Theme.thumbRadius
        visible: !picture.loaded

        Symbol {
            anchors.centerIn: parent
            name: root.symbol
            strength: 0.35
        }
    }

    Thumbnail {
        id: picture

        anchors.fill: parent
        maxPixel: 200
        radius: Theme.thumbRadius
        source: root.imageUrl
    }

    // The mark of a pinned entry.
    Rectangle {
        color: Theme.scrim
        height: 16
        radius: 8
        visible: root.pinned && !cover.active
        width: 16
        x: 4
        y: 4

        Symbol {
            anchors.centerIn: parent
            name: "pin.fill"
            size: 8
        }
    }

    FadingLoader {
        id: cover

        anchors.fill: parent
        shown: root.hovered || root.copiedFlash

        sourceComponent: Rectangle {
            color: Theme.scrim
            radius: Theme.thumbRadius

            Line {
                anchors.centerIn: parent
                font.pixelSize: Theme.metaText
                fontSizeMode: Text.HorizontalFit
                horizontalAlignment: Text.AlignHCenter
                minimumPixelSize: 7
                text: L10n.texts[L10n.Copied]
                visible: root.copiedFlash
                width: parent.width - 4
            }

            EntryActions {
                anchors.centerIn: parent
                buttonWidth: 18
                pinned: root.pinned
                visible: !root.copiedFlash

                onCopyClicked: root.copy()
                onPinClicked: root.store.togglePin(root.itemId)
                onRemoveClicked: root.store.remove(root.itemId)
            }
        }
    }

    Rectangle {
        anchors.fill: parent
        anchors.margins: -2
        border.color: Theme.accent
        border.width: 2
        color: "transparent"
        radius: Theme.thumbRadius + 2
        visible: root.selected
    }
}
