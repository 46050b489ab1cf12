import QtQuick

/// What lies beyond the edges of a list fades out there instead of being cut.
Item {
    id: root

    required property Flickable flickable

    readonly property bool _horizontal: flickable.flickableDirection === Flickable.HorizontalFlick

    anchors.fill: flickable

    EdgeFade {
        beyond: root._horizontal ? root.flickable.contentX - root.flickable.originX : root.flickable.contentY - root.flickable.originY
        edge: root._horizontal ? Qt.LeftEdge : Qt.TopEdge
        height: root._horizontal ? root.height : Theme.fadeLength / 2
        width: root._horizontal ? Theme.fadeLength : root.width
    }

    EdgeFade {
        anchors.bottom: parent.bottom
        anchors.right: parent.right
        beyond: root._horizontal ? root.flickable.contentWidth + root.flickable.originX - root.flickable.contentX - root.flickable.width : root.flickable.contentHeight + root.flickable.originY - root.flickable.contentY - root.flickable.height
        edge: root._horizontal ? Qt.RightEdge : Qt.BottomEdge
        height: root._horizontal ? root.height : Theme.fadeLength
        width: root._horizontal ? Theme.fadeLength : root.width
    }
}
