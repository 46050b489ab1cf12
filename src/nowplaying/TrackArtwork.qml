import QtQuick
import Nimbarrow.NowPlaying
import Nimbarrow.Preferences
import Nimbarrow.Style

/// The track's picture, or a note where it has none. It is the way to the program that plays.
Pressable {
    id: root

    required property NowPlayingModel player

    // Made anew when the language changes.
    help: L10n.texts.length > 0 ? L10n.open(player.appName) : ""
    implicitHeight: Theme.artworkSize
    implicitWidth: Theme.artworkSize
    name: help
    ringRadius: Theme.artworkRadius + 2

    onClicked: player.showApp()

    Rectangle {
        anchors.fill: parent
        color: Theme.restingFill
        radius: Theme.artworkRadius
        visible: !picture.loaded

        Symbol {
            anchors.centerIn: parent
            name: "music.note"
            size: 30
            strength: 0.35
        }
    }

    Picture {
        id: picture

        anchors.fill: parent
        image: root.player.artwork
        radius: Theme.artworkRadius
    }
}
