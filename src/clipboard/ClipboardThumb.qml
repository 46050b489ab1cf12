pragma ComponentBehavior: Bound

import QtQuick
import Nimbarrow.Clipboard
import Nimbarrow.Preferences
import Nimbarrow.Style

/// An image of the history in small.
ClipboardEntry {
    id: root

    property bool _previewing: false

    /// The image is wanted large, for as long as the button is held down.
    signal previewRequested
    signal previewDone

    function endPreview() {
        if (!_previewing)
            return;
        _previewing = false;
        previewDone();
    }

    face: picture
    implicitHeight: Theme.thumbHeight
    implicitWidth: Theme.thumbWidth

    Component.onDestruction: endPreview()
    ListView.onPooled: endPreview()
    onHeldDown: {
        _previewing = true;
        previewRequested();
    }
    onLetGo: endPreview()

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
        visible: root.pinned && !cover.present
        width: 16
        x: 2
        y: 2

        Symbol {
            anchors.centerIn: parent
            name: "pin.fill"
            size: 9
        }
    }

    FadingContent {
        id: cover

        anchors.fill: parent
        shown: root.hovered || root.copiedFlash

        content: Rectangle {
            anchors.fill: parent
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

            // A click anywhere copies, and the middle says so; the rest keeps to the corners.
            Symbol {
                Accessible.ignored: root.copiedFlash
                Accessible.name: L10n.texts[L10n.Copy]
                Accessible.role: Accessible.Button
                anchors.centerIn: parent
                name: "doc.on.doc"
                visible: !root.copiedFlash

                Accessible.onPressAction: root.copy()
            }

            IconButton {
                anchors.left: parent.left
                height: 20
                help: L10n.texts[root.pinned ? L10n.Unpin : L10n.Pin]
                size: 9
                symbol: root.pinned ? "pin.fill" : "pin"
                visible: !root.copiedFlash
                width: 20

                onClicked: root.store.togglePin(root.itemId)
            }

            IconButton {
                anchors.bottom: parent.bottom
                anchors.right: parent.right
                height: 20
                help: L10n.texts[L10n.Share]
                size: 9
                symbol: "square.and.arrow.up"
                visible: !root.copiedFlash
                width: 20

                onClicked: root.handoff.share(root.itemId)
            }

            IconButton {
                anchors.right: parent.right
                height: 20
                help: L10n.texts[L10n.Delete]
                size: 9
                symbol: "trash"
                visible: !root.copiedFlash
                width: 20

                onClicked: root.store.remove(root.itemId)
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
