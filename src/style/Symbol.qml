import QtQuick
import Nimbarrow.Style

/// One of the program's own drawings, by name and by the size of the text that it stands beside.
Item {
    id: root

    required property string name
    /// In points of type.
    property real size: Theme.smallText
    /// How white it is.
    property real strength: 0.92

    // A drawing is larger than the letters of its size, and has whole pixels in every scale.
    readonly property real _scale: Screen.devicePixelRatio
    readonly property int _points: Math.round(size * 1.36)
    readonly property real _side: Math.round(_points * _scale) / _scale

    implicitHeight: _side
    implicitWidth: _side

    SymbolImage {
        anchors.centerIn: parent
        height: root._side
        name: root.name
        opacity: root.strength
        width: root._side
    }
}
