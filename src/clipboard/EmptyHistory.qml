import QtQuick
import Nimbarrow.Preferences
import Nimbarrow.Style

/// Stands where the history will be, and says how it comes to be.
Item {
    id: root

    Column {
        anchors.centerIn: parent
        spacing: Theme.gap

        Symbol {
            anchors.horizontalCenter: parent.horizontalCenter
            name: "doc.on.doc"
            size: 19
            strength: 0.35
        }

        Line {
            anchors.horizontalCenter: parent.horizontalCenter
            color: Theme.secondary
            font.pixelSize: Theme.rowText
            horizontalAlignment: Text.AlignHCenter
            text: L10n.texts[L10n.ClipboardEmpty]
            width: Math.min(implicitWidth, root.width)
        }
    }
}
