import QtQuick

/// Stands around the control that has the keyboard.
Rectangle {
    required property bool shown

    anchors.fill: parent
    anchors.margins: -2
    border.color: Theme.title
    border.width: 1
    color: "transparent"
    radius: ((parent as Rectangle)?.radius ?? 0) + 2
    visible: shown
}
