pragma ComponentBehavior: Bound

import QtQuick
import Nimbarrow.NowPlaying
import Nimbarrow.Style

/// A track: what it is, how far it has come, and the means to play it.
Item {
    id: root

    required property NowPlayingModel player
    /// Somebody can see it, so it may move.
    required property bool live

    signal dragStarted
    signal dragEnded

    property bool volumeOpen: false
    /// The volume that is being dragged; less than 0 while none is.
    property real volumeDraft: -1

    // What the parts leave of the height stands between them.
    readonly property real _spare: Math.max(0, height - 165)

    TrackArtwork {
        id: artwork

        player: root.player
    }

    MarqueeText {
        id: title

        color: Theme.title
        font.pixelSize: Theme.rowText
        font.weight: Font.DemiBold
        height: 16
        scrolling: root.live && !Motion.reduced
        text: root.player.track.title
        width: root.width
        y: artwork.height + 7 + Math.round(root._spare / 2)
    }

    Line {
        id: artist

        Accessible.name: text
        Accessible.role: Accessible.StaticText
        color: Theme.secondary
        height: 14
        text: root.player.track.artist
        width: root.width
        y: title.y + title.height
    }

    PlaybackProgress {
        id: progress

        live: root.live
        player: root.player
        width: root.width
        y: artist.y + artist.height + 2

        onDragEnded: root.dragEnded()
        onDragStarted: root.dragStarted()
    }

    TransportControls {
        anchors.bottom: parent.bottom
        player: root.player
        volume: root.volumeDraft >= 0 ? root.volumeDraft : root.player.volume
        volumeOpen: root.volumeOpen
        width: root.width

        onVolumeToggled: root.volumeOpen = !root.volumeOpen
    }

    // Comes after the button that opens it, for the Tab key too.
    FadingContent {
        fadeDuration: Theme.openDuration
        shown: root.volumeOpen
        x: root.width - 11
        y: (artwork.height - height) / 2

        content: VolumeSlider {
            player: root.player

            onDraftChanged: root.volumeDraft = draft
            onDragEnded: root.dragEnded()
            onDragStarted: root.dragStarted()
        }
    }
}
