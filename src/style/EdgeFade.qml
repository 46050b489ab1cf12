import QtQuick

/// Black that grows towards one edge of a list: what lies beyond fades out instead of being cut.
Rectangle {
    id: root

    /// Of the edge that it covers.
    property int edge: Qt.BottomEdge
    /// How far the list goes on beyond the edge.
    required property real beyond

    readonly property bool _vertical: edge === Qt.TopEdge || edge === Qt.BottomEdge
    readonly property bool _atStart: edge === Qt.TopEdge || edge === Qt.LeftEdge

    opacity: Math.max(0, Math.min(1, beyond / Theme.fadeLength))
    visible: opacity > 0

    gradient: Gradient {
        orientation: root._vertical ? Gradient.Vertical : Gradient.Horizontal

        GradientStop {
            color: root._atStart ? Theme.surface : "transparent"
            position: 0
        }
        GradientStop {
            color: root._atStart ? "transparent" : Theme.surface
            position: 1
        }
    }
}
