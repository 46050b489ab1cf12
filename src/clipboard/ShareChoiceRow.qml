import QtQuick
import Nimbarrow.Preferences
import Nimbarrow.Style

/// One thing that can be done with what is shared.
Pressable {
    id: root

    required property int index
    required property var modelData

    Accessible.role: Accessible.MenuItem
    implicitHeight: Theme.rowHeight
    name: label.text
    ringRadius: Theme.rowRadius

    Rectangle {
        anchors.fill: parent
        color: root.hovered ? Theme.hoverFill : "transparent"
        radius: Theme.rowRadius
    }

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
}
