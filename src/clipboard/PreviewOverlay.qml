import QtQuick
import Nimbarrow.Clipboard
import Nimbarrow.Preferences
import Nimbarrow.Style

/// An image of the history as large as there is room, but never larger than it is.
Item {
    id: root

    /// The file of the image.
    required property url source

    Accessible.name: L10n.texts[L10n.KindImage]
    Accessible.role: Accessible.Graphic

    Symbol {
        anchors.centerIn: parent
        name: "photo"
        size: 28
        strength: 0.35
        visible: !small.loaded && !large.loaded
    }

    // Known already as a rule, and shown until the large one is read.
    Thumbnail {
        id: small

        anchors.fill: parent
        fit: true
        maxPixel: 200
        wholeBelow: maxPixel
        radius: Theme.rowRadius
        source: root.source
        visible: !large.loaded
    }

    Thumbnail {
        id: large

        anchors.fill: parent
        fit: true
        maxPixel: 1600
        wholeBelow: maxPixel
        radius: Theme.rowRadius
        source: root.source
    }
}
