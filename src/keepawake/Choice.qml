import QtQuick
import Nimbarrow.Style

/// One row of the picker.
Rectangle {
    id: root

    required property string label
    readonly property bool hovered: hover.hovered

    signal clicked

    Accessible.name: label
    Accessible.role: Accessible.MenuItem
    color: hovered ? Theme.hoverFill : "transparent"
    implicitHeight: 26
    implicitWidth: text.implicitWidth + 2 * Theme.gap
    radius: Theme.smallRadius

    Accessible.onPressAction: clicked()

    Line {
        id: text

        anchors.fill: parent
        color: root.hovered ? Theme.title : Theme.secondary
        // The sign is much smaller than the digits of its size.
        font.pixelSize: root.label === "∞" ? 17 : Theme.rowText
        horizontalAlignment: Text.AlignHCenter
        text: root.label
    }

    HoverHandler {
        id: hover
    }

    TapHandler {
        gesturePolicy: TapHandler.ReleaseWithinBounds

        onTapped: root.clicked()
    }
}
