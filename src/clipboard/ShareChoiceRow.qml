import QtQuick
import Nimbarrow.Preferences
import Nimbarrow.Style

/// One thing that can be done with what is shared.
Rectangle {
    id: root

    required property int index
    required property var modelData

    signal chosen

    Accessible.name: label.text
    Accessible.role: Accessible.MenuItem
    color: hover.hovered ? Theme.hoverFill : "transparent"
    implicitHeight: Theme.rowHeight
    radius: Theme.rowRadius

    Accessible.onPressAction: chosen()

    Symbol {
        anchors.verticalCenter: parent.verticalCenter
        // Small letters have their middle below that of the line.
        anchors.verticalCenterOffset: 1
        name: root.modelData.symbol
        size: Theme.rowText
        x: Theme.gap
    }

    Line {
        id: label

        anchors.left: parent.left
        anchors.leftMargin: 34
        anchors.right: parent.right
        anchors.rightMargin: Theme.gap
        font.pixelSize: Theme.rowText
        height: root.height
        text: L10n.texts[root.modelData.titleKey]
    }

    HoverHandler {
        id: hover
    }

    TapHandler {
        gesturePolicy: TapHandler.ReleaseWithinBounds

        onTapped: root.chosen()
    }
}
