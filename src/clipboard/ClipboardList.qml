pragma ComponentBehavior: Bound

import QtQuick
import Nimbarrow.Clipboard
import Nimbarrow.Style

/// The texts, links and files of the history, one a row.
Item {
    id: root

    required property ClipboardStore store
    required property EntryHandoff handoff
    required property var selection
    required property bool keyboardMode

    signal collapseRequested

    EntryList {
        id: list

        anchors.fill: parent
        entries: root.store.textualItems
        keyboardMode: root.keyboardMode
        preferredHighlightBegin: Theme.fadeLength / 2
        preferredHighlightEnd: height - Theme.fadeLength
        selection: root.selection
        spacing: Theme.rowSpacing

        delegate: ClipboardRow {
            handoff: root.handoff
            keyboardMode: root.keyboardMode
            selection: root.selection
            store: root.store
            width: list.width

            onCollapseRequested: root.collapseRequested()
        }
    }

    EdgeFades {
        flickable: list
    }
}
