import QtQuick

/// A quiet button that is one word.
Item {
    id: root

    required property string text
    property real size: Theme.metaText
    /// Stands out, as the one thing to do.
    property bool emphasized: false

    signal clicked

    Accessible.name: text
    Accessible.role: Accessible.Button
    activeFocusOnTab: true
    implicitHeight: line.implicitHeight
    implicitWidth: line.implicitWidth

    Accessible.onPressAction: clicked()
    Keys.onEnterPressed: clicked()
    Keys.onReturnPressed: clicked()
    Keys.onSpacePressed: clicked()

    Line {
        id: line

        anchors.fill: parent
        color: hover.hovered || root.emphasized ? Theme.title : Theme.secondary
        font.pixelSize: root.size
        font.underline: root.emphasized && hover.hovered
        text: root.text
    }

    FocusRing {
        anchors.leftMargin: -4
        anchors.rightMargin: -4
        radius: Theme.smallRadius
        shown: root.activeFocus
    }

    HoverHandler {
        id: hover

        margin: 4
    }

    TapHandler {
        gesturePolicy: TapHandler.ReleaseWithinBounds
        margin: 4

        onTapped: root.clicked()
    }
}
