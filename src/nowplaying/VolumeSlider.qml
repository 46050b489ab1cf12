import QtQuick
import Nimbarrow.NowPlaying
import Nimbarrow.Preferences
import Nimbarrow.Style

/// An upright capsule, filled as far as the player is loud.
Item {
    id: root

    required property NowPlayingModel player
    /// The volume that is being dragged, 0 to 100; less while none is.
    property real draft: -1

    signal dragStarted
    signal dragEnded

    readonly property real _shown: draft >= 0 ? draft : player.volume

    function _dragTo(y: real) {
        draft = Math.max(0, Math.min(100, (1 - y / height) * 100));
    }

    function _change(by: real) {
        player.setVolume(Math.max(0, Math.min(100, player.volume + by)));
    }

    Accessible.name: L10n.texts[L10n.Volume] + " " + Math.round(_shown) + " %"
    Accessible.role: Accessible.Slider
    activeFocusOnTab: player.hasVolume
    implicitHeight: 66
    implicitWidth: 7

    Accessible.onDecreaseAction: _change(-5)
    Accessible.onIncreaseAction: _change(5)
    // The arrows are the history's.
    Keys.onPressed: event => {
        const step = (event.key === Qt.Key_PageUp) - (event.key === Qt.Key_PageDown);
        event.accepted = step !== 0;
        if (event.accepted)
            _change(5 * step);
    }

    Rectangle {
        anchors.fill: parent
        color: Theme.restingFill
        radius: width / 2
    }

    // The capsule's own end, however little of it is filled.
    Item {
        anchors.bottom: parent.bottom
        clip: true
        height: Math.round(root.height * root._shown / 100)
        width: root.width

        Rectangle {
            anchors.bottom: parent.bottom
            color: root.player.hasVolume ? Theme.title : Theme.hint
            height: root.height
            radius: width / 2
            width: root.width
        }
    }

    FocusRing {
        radius: width / 2
        shown: root.activeFocus
    }

    MouseArea {
        id: area

        anchors.bottomMargin: 0
        anchors.fill: parent
        anchors.leftMargin: -8
        anchors.rightMargin: -8
        enabled: root.player.hasVolume
        preventStealing: true

        Component.onDestruction: {
            if (pressed)
                root.dragEnded();
        }
        onCanceled: {
            root.draft = -1;
            root.dragEnded();
        }
        onPositionChanged: mouse => root._dragTo(mouse.y)
        onPressed: mouse => {
            root.dragStarted();
            root._dragTo(mouse.y);
        }
        onReleased: {
            const chosen = root.draft;
            root.player.setVolume(chosen);
            root.draft = -1;
            root.dragEnded();
        }
    }
}
