pragma ComponentBehavior: Bound

import QtQuick
import Nimbarrow.Clipboard
import Nimbarrow.Preferences
import Nimbarrow.Style

/// The history: its title, the images and the list of everything else.
Item {
    id: root

    required property ClipboardStore store
    required property EntryHandoff handoff
    /// Identifier of the entry that the keyboard has selected, while it is used.
    required property var selection
    required property bool keyboardMode

    signal collapseRequested
    signal previewRequested(id: var)
    signal previewDone

    readonly property real _titleHeight: 16
    readonly property bool _hasImages: store.imageItems.count > 0
    /// Where the history begins, below the title and what is to be said of it.
    readonly property real _top: _titleHeight + (notice.visible ? notice.height : 0)

    Line {
        id: title

        color: Theme.secondary
        font.weight: Font.DemiBold
        height: root._titleHeight
        text: L10n.texts[L10n.Clipboard]
        width: Math.min(implicitWidth, root.width - clear.width - Theme.gap)
    }

    TextButton {
        id: clear

        anchors.right: parent.right
        height: root._titleHeight
        text: L10n.texts[L10n.Clear]
        visible: !root.store.isEmpty

        onClicked: root.store.clear()
    }

    Line {
        id: notice

        Accessible.name: text
        Accessible.role: Accessible.StaticText
        color: Theme.secondary
        height: root._titleHeight
        text: root.store.notice
        visible: text !== ""
        width: root.width
        y: root._titleHeight
    }

    FadingContent {
        anchors.fill: parent
        anchors.topMargin: root._top
        // It asks for copies.
        shown: root.store.isEmpty && root.store.seesCopies

        content: EmptyHistory {
            anchors.fill: parent
        }
    }

    FadingContent {
        anchors.left: parent.left
        anchors.right: parent.right
        height: Theme.thumbHeight
        shown: root._hasImages
        y: root._top + 4

        content: ImageStrip {
            anchors.fill: parent
            handoff: root.handoff
            keyboardMode: root.keyboardMode
            selection: root.selection
            store: root.store

            onCollapseRequested: root.collapseRequested()
            onPreviewDone: root.previewDone()
            onPreviewRequested: id => root.previewRequested(id)
        }
    }

    ClipboardList {
        anchors.bottom: parent.bottom
        anchors.left: parent.left
        anchors.right: parent.right
        anchors.top: parent.top
        anchors.topMargin: root._top + 4 + (root._hasImages ? Theme.thumbHeight + Theme.gap : 0)
        handoff: root.handoff
        keyboardMode: root.keyboardMode
        selection: root.selection
        store: root.store

        Behavior on anchors.topMargin {
            NumberAnimation {
                duration: Theme.slideDuration
                easing.type: Easing.OutCubic
            }
        }

        onCollapseRequested: root.collapseRequested()
    }
}
