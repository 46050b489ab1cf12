import QtQuick

/// A quiet button that is one word.
Line {
    id: root

    signal clicked

    Accessible.name: text
    Accessible.role: Accessible.Button
    color: hover.hovered ? Theme.title : Theme.hint
    font.pixelSize: Theme.metaText

    Accessible.onPressAction: clicked()

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
