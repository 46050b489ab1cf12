import QtQuick
import Nimbarrow.Style

/// One line of text that, where it does not fit, moves to its end and back again for ever. While that is not
/// allowed it ends in an ellipsis.
Item {
    id: root

    required property string text
    property bool scrolling: false
    property alias color: line.color
    property alias font: line.font

    readonly property real containerWidth: width
    readonly property real fullWidth: Math.ceil(metrics.advanceWidth)
    readonly property bool active: scrolling && fullWidth > containerWidth
    /// How far the text has moved to the right; never more than 0.
    property real offset: 0

    readonly property real _overflow: Math.max(0, fullWidth - containerWidth)
    readonly property int _rest: 800
    // 30 points a second, and never in a hurry.
    readonly property int _leg: 1000 * Math.max(_overflow / 30, 0.8)

    function _restart() {
        movement.stop();
        offset = 0;
        later.restart();
    }

    Accessible.name: text
    Accessible.role: Accessible.StaticText
    clip: active
    implicitHeight: line.implicitHeight

    Component.onCompleted: _restart()
    onActiveChanged: _restart()
    on_OverflowChanged: _restart()
    onTextChanged: _restart()

    TextMetrics {
        id: metrics

        font: line.font
        text: root.text
    }

    Line {
        id: line

        Accessible.ignored: true
        elide: root.active ? Text.ElideNone : Text.ElideRight
        height: root.height
        text: root.text
        width: root.active ? root.fullWidth : root.width
        // Between two pixels it would not look any different and still be drawn again.
        x: Math.round(root.offset * Screen.devicePixelRatio) / Screen.devicePixelRatio
    }

    EdgeFade {
        beyond: -root.offset
        edge: Qt.LeftEdge
        height: root.height
        visible: root.active && opacity > 0
        width: Theme.gap
    }

    EdgeFade {
        anchors.right: parent.right
        beyond: root._overflow + root.offset
        edge: Qt.RightEdge
        height: root.height
        visible: root.active && opacity > 0
        width: Theme.gap
    }

    // By then everything that depends on the text has followed it.
    Timer {
        id: later

        interval: 0

        onTriggered: {
            if (root.active)
                movement.start();
        }
    }

    SequentialAnimation {
        id: movement

        loops: Animation.Infinite

        PauseAnimation {
            duration: root._rest
        }

        NumberAnimation {
            duration: root._leg
            property: "offset"
            target: root
            to: -root._overflow
        }

        PauseAnimation {
            duration: root._rest
        }

        NumberAnimation {
            duration: root._leg
            property: "offset"
            target: root
            to: 0
        }
    }
}
