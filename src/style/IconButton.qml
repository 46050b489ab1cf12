import QtQuick

/// A small button that is one symbol.
Pressable {
    id: root

    required property string symbol
    /// In points of type.
    property real size: Theme.smallText
    /// Stands for something that is on.
    property bool active: false
    /// How white it is when nothing happens to it.
    property real restingStrength: 0.5

    implicitHeight: 24
    implicitWidth: 24
    name: help

    Symbol {
        anchors.centerIn: parent
        name: root.symbol
        size: root.size
        strength: root.hovered || root.active ? 0.92 : root.restingStrength

        Behavior on strength {
            NumberAnimation {
                duration: Theme.fadeDuration
            }
        }
    }
}
