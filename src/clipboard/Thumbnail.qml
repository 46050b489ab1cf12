import QtQuick
import Nimbarrow.Clipboard
import Nimbarrow.Style

/// Draws the thumbnail of an image file. Empty until it is loaded.
Picture {
    id: root

    property alias maxPixel: file.maxPixel
    property alias source: file.source

    image: file.image

    ThumbnailFile {
        id: file
    }
}
