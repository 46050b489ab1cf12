import QtQuick

/// A quiet button that is one word.
Item {
    id: root

    required property string text

    signal clicked

    Accessible.name: text
    Accessible.role: Accessible.Button
    implicitHeight: line.implicitHeight
    implicitWidth: line.implicitWidth

    Accessible.onPressAction: clicked()

    Line {
        id: line

        anchors.fill: parent
        color: hover.hovered ? Theme.title : Theme.secondary
        font.pixelSize: Theme.metaText
        text: root.text
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
