import QtQuick
import Nimbarrow.NowPlaying
import Nimbarrow.Preferences
import Nimbarrow.Style

/// The buttons below the track.
Item {
    id: root

    required property NowPlayingModel player
    /// As the volume button shows it, 0 to 100.
    required property real volume
    required property bool volumeOpen

    signal volumeToggled

    implicitHeight: 28

    // The drawings, not the buttons around them, stand in line with the edges of the column.
    Row {
        spacing: 8
        x: -3

        IconButton {
            anchors.verticalCenter: parent.verticalCenter
            help: L10n.texts[L10n.Previous]
            restingStrength: 0.92
            size: 13
            symbol: "backward.fill"

            onClicked: root.player.previous()
        }

        IconButton {
            help: L10n.texts[L10n.PlayPause]
            height: 28
            restingStrength: 0.92
            size: 19
            symbol: root.player.playing ? "pause.fill" : "play.fill"
            width: 30

            onClicked: root.player.playPause()
        }

        IconButton {
            anchors.verticalCenter: parent.verticalCenter
            help: L10n.texts[L10n.Next]
            restingStrength: 0.92
            size: 13
            symbol: "forward.fill"

            onClicked: root.player.next()
        }
    }

    IconButton {
        active: root.volumeOpen
        anchors.right: parent.right
        anchors.rightMargin: -5
        anchors.verticalCenter: parent.verticalCenter
        help: L10n.texts[L10n.Volume]
        restingStrength: root.player.hasVolume ? 0.5 : 0.35
        symbol: root.player.volumeSymbol(root.volume)
        width: 25

        onClicked: root.volumeToggled()
    }
}
