import QtQuick

/// A quiet button that is one word.
Pressable {
    id: root

    required property string text
    property real size: Theme.metaText
    /// Stands out, as the one thing to do.
    property bool emphasized: false

    implicitHeight: line.implicitHeight
    implicitWidth: line.implicitWidth
    margin: 4
    name: text

    Line {
        id: line

        anchors.fill: parent
        color: root.hovered || root.emphasized ? Theme.title : Theme.secondary
        font.pixelSize: root.size
        font.underline: root.emphasized && root.hovered
        text: root.text
    }
}
