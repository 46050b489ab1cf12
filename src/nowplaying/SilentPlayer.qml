import QtQuick
import Nimbarrow.Preferences
import Nimbarrow.Style

/// Stands where a track will be, and says what keeps it away.
Item {
    id: root

    required property bool permissionDenied
    required property bool hasTrack

    Column {
        anchors.centerIn: parent
        spacing: Theme.gap
        width: root.width

        Symbol {
            anchors.horizontalCenter: parent.horizontalCenter
            name: "music.note"
            size: 19
            strength: 0.35
        }

        Line {
            Accessible.name: text
            Accessible.role: Accessible.StaticText
            color: Theme.secondary
            horizontalAlignment: Text.AlignHCenter
            text: L10n.texts[L10n.NothingPlaying]
            visible: !root.hasTrack
            width: parent.width
        }

        Text {
            Accessible.name: text
            Accessible.role: Accessible.StaticText
            color: Theme.secondary
            font.pixelSize: Theme.metaText
            horizontalAlignment: Text.AlignHCenter
            text: L10n.texts[L10n.MusicPermissionHint]
            textFormat: Text.PlainText
            visible: root.permissionDenied
            width: parent.width
            wrapMode: Text.Wrap
        }
    }
}
