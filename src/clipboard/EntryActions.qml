import QtQuick
import Nimbarrow.Preferences
import Nimbarrow.Style

/// The buttons of an entry under the pointer. The pin comes last, where a pinned entry has its mark.
Row {
    id: root

    required property bool pinned

    signal copyClicked
    signal shareClicked
    signal removeClicked
    signal pinClicked

    IconButton {
        help: L10n.texts[L10n.Copy]
        symbol: "doc.on.doc"

        onClicked: root.copyClicked()
    }

    IconButton {
        help: L10n.texts[L10n.Share]
        symbol: "square.and.arrow.up"

        onClicked: root.shareClicked()
    }

    IconButton {
        help: L10n.texts[L10n.Delete]
        symbol: "trash"

        onClicked: root.removeClicked()
    }

    IconButton {
        help: L10n.texts[root.pinned ? L10n.Unpin : L10n.Pin]
        symbol: root.pinned ? "pin.fill" : "pin"

        onClicked: root.pinClicked()
    }
}
