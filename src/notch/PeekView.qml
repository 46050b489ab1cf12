pragma ComponentBehavior: Bound

import QtQuick
import Nimbarrow.Clipboard
import Nimbarrow.Notch
import Nimbarrow.Style

/// One notice: a small picture left of the notch and a line of text right of it.
Item {
    id: root

    property peekContent content
    /// This much in the middle lies behind the notch.
    required property real notchWidth
    required property real leadingWidth
    required property real lineWidth

    readonly property real _pictureSize: 22

    Accessible.name: content.line
    Accessible.role: Accessible.Notification
    width: leadingWidth + notchWidth + lineWidth

    Item {
        height: root.height
        width: root.leadingWidth

        Symbol {
            anchors.centerIn: parent
            name: root.content.symbol
            size: 13
            visible: !artwork.loaded && !picture.loaded
        }

        Picture {
            id: artwork

            anchors.centerIn: parent
            height: root._pictureSize
            image: root.content.image
            radius: Theme.smallRadius
            width: root._pictureSize
        }

        Thumbnail {
            id: picture

            anchors.centerIn: parent
            height: root._pictureSize
            maxPixel: 120
            radius: Theme.smallRadius
            source: root.content.imageUrl
            visible: !artwork.loaded
            width: root._pictureSize
        }
    }

    Line {
        font.weight: Font.Medium
        height: root.height
        rightPadding: 12
        text: root.content.line
        width: root.lineWidth
        x: root.leadingWidth + root.notchWidth
    }
}
