import QtQuick
import Nimbarrow.Preferences
import Nimbarrow.Style

/// The buttons of an entry under the pointer. The pin comes last, where a pinned entry has its mark.
Row {
    id: root

    required property bool pinned
    property real buttonWidth: 24

    signal copyClicked
    signal removeClicked
    signal pinClicked

    IconButton {
        help: L10n.texts[L10n.Copy]
        symbol: "doc.on.doc"
        width: root.buttonWidth

        onClicked: root.copyClicked()
    }

    IconButton {
        help: L10n.texts[L10n.Delete]
        symbol: "trash"
        width: root.buttonWidth

        onClicked: root.removeClicked()
    }

    IconButton {
        help: L10n.texts[root.pinned ? L10n.Unpin : L10n.Pin]
        symbol: root.pinned ? "pin.fill" : "pin"
        width: root.buttonWidth

        onClicked: root.pinClicked()
    }
}
