pragma ComponentBehavior: Bound

import QtQuick
import Nimbarrow.NowPlaying
import Nimbarrow.Style

/// What is playing, and the means to play it.
Item {
    id: root

    required property NowPlayingModel player
    /// The surface is open. Nothing moves while it is not.
    property bool shown: true

    /// From here on the surface must stay as it is, until the drag has ended.
    signal dragStarted
    signal dragEnded

    readonly property bool _plays: player.hasTrack && !player.permissionDenied

    implicitHeight: 165
    implicitWidth: 150

    Component.onCompleted: {
        if (shown)
            player.refresh();
    }
    onShownChanged: {
        if (shown)
            player.refresh();
    }

    FadingContent {
        anchors.fill: parent
        shown: root._plays

        content: PlayerView {
            anchors.fill: parent
            live: root.shown
            player: root.player

            onDragEnded: root.dragEnded()
            onDragStarted: root.dragStarted()
        }
    }

    FadingContent {
        anchors.fill: parent
        shown: !root._plays

        content: SilentPlayer {
            anchors.fill: parent
            hasTrack: root.player.hasTrack
            permissionDenied: root.player.permissionDenied
        }
    }
}
