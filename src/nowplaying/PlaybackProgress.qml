import QtQuick
import Nimbarrow.NowPlaying
import Nimbarrow.Style

/// How far the track has come, with the times, and where a drag takes it.
Item {
    id: root

    required property NowPlayingModel player
    /// Somebody can see it, so it goes on with the track.
    required property bool live

    signal dragStarted
    signal dragEnded

    readonly property real _duration: player.track.duration
    readonly property bool _known: _duration > 0
    readonly property bool _draggable: _known && player.canSeek
    /// Seconds, as shown.
    property real _position: 0
    readonly property real _fraction: _known ? Math.min(1, _position / _duration) : 0

    function _follow() {
        if (!area.pressed)
            _position = player.position;
    }

    function _dragTo(x: real) {
        _position = Math.max(0, Math.min(1, x / width)) * _duration;
    }

    Accessible.focusable: _known
    Accessible.name: elapsed.text + " / " + player.timeText(_duration)
    Accessible.role: Accessible.ProgressBar
    activeFocusOnTab: _known
    implicitHeight: 22

    Component.onCompleted: _follow()
    // The arrows are the history's.
    Keys.onPressed: event => {
        const step = (event.key === Qt.Key_PageUp) - (event.key === Qt.Key_PageDown);
        event.accepted = step !== 0;
        if (event.accepted)
            player.seek(Math.max(0, Math.min(_duration, player.position + 10 * step)));
    }
    onLiveChanged: _follow()

    Connections {
        function onPositionChanged() {
            root._follow();
        }

        function onTrackChanged() {
            root._follow();
        }

        target: root.player
    }

    // What looks the same is not drawn again: mostly that is once for each second.
    Timer {
        interval: 250
        repeat: true
        running: root.live && root.player.playing && root._known

        onTriggered: root._follow()
    }

    Rectangle {
        id: track

        readonly property real _scale: Screen.devicePixelRatio

        color: Theme.restingFill
        height: root._draggable && (area.containsMouse || area.pressed) ? 5 : 3
        radius: height / 2
        width: root.width
        y: 5 - Math.floor(height / 2)

        Rectangle {
            color: Theme.title
            height: parent.height
            radius: parent.radius
            width: Math.round(root.width * root._fraction * track._scale) / track._scale
        }

        FocusRing {
            shown: root.activeFocus
        }
    }

    Line {
        id: elapsed

        anchors.bottom: parent.bottom
        color: Theme.hint
        font.pixelSize: Theme.timeText
        height: 12
        text: root.player.timeText(root._position)
        visible: root._known
    }

    Line {
        anchors.bottom: parent.bottom
        anchors.right: parent.right
        color: Theme.hint
        font.pixelSize: Theme.timeText
        height: 12
        // Both times change at the same moment.
        text: "−" + root.player.timeText(Math.floor(root._duration) - Math.floor(root._position))
        visible: root._known
    }

    MouseArea {
        id: area

        enabled: root._draggable
        height: 12
        hoverEnabled: true
        preventStealing: true
        width: root.width

        Component.onDestruction: {
            if (pressed)
                root.dragEnded();
        }
        onCanceled: {
            root.dragEnded();
            root._follow();
        }
        onPositionChanged: mouse => {
            if (pressed)
                root._dragTo(mouse.x);
        }
        onPressed: mouse => {
            root.dragStarted();
            root._dragTo(mouse.x);
        }
        onReleased: {
            root.player.seek(root._position);
            root.dragEnded();
        }
    }
}
