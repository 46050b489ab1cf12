import QtQuick
import Nimbarrow.NowPlaying
import Nimbarrow.Preferences
import Nimbarrow.Style

/// The track's picture, or a note where it has none. It is the way to the program that plays.
Item {
    id: root

    required property NowPlayingModel player

    // Made anew when the language changes.
    readonly property string _help: L10n.texts.length > 0 ? L10n.open(player.appName) : ""

    Accessible.name: _help
    Accessible.role: Accessible.Button
    implicitHeight: Theme.artworkSize
    implicitWidth: Theme.artworkSize

    Accessible.onPressAction: player.showApp()
    Component.onDestruction: HelpText.withdraw(root)

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

    HoverHandler {
        onHoveredChanged: hovered ? HelpText.offer(root, root._help, Theme.helpDelay) : HelpText.withdraw(root)
    }

    TapHandler {
        gesturePolicy: TapHandler.ReleaseWithinBounds

        onTapped: {
            HelpText.withdraw(root);
            root.player.showApp();
        }
    }
}
