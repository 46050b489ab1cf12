import QtQuick
import Nimbarrow.Style

/// One row of the picker.
Pressable {
    id: root

    required property string label

    Accessible.role: Accessible.MenuItem
    implicitHeight: 26
    implicitWidth: text.implicitWidth + 2 * Theme.gap
    name: label

    Rectangle {
        anchors.fill: parent
        color: root.hovered ? Theme.hoverFill : "transparent"
        radius: Theme.smallRadius
    }

    Line {
        id: text

        anchors.fill: parent
        color: root.hovered || root.activeFocus ? Theme.title : Theme.secondary
        // The sign is much smaller than the digits of its size.
        font.pixelSize: root.label === "∞" ? 17 : Theme.rowText
        horizontalAlignment: Text.AlignHCenter
        text: root.label
    }
}
