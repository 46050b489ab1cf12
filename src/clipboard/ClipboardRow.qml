pragma ComponentBehavior: Bound

import QtQuick
import Nimbarrow.Preferences
import Nimbarrow.Style

/// A text, a link or a set of files in the history: its symbol, one line of it, and its actions under the
/// pointer.
ClipboardEntry {
    id: root

    readonly property bool _showsActions: hovered && !copiedFlash
    // Small letters have their middle below that of the line.
    readonly property real _opticalOffset: 1
    readonly property color _ink: selected ? Theme.accentText : Theme.title

    face: bearer
    helpWanted: line.truncated || help !== title
    implicitHeight: Theme.rowHeight

    Rectangle {
        anchors.fill: parent
        color: Theme.accent
        radius: Theme.rowRadius
        visible: root.selected
    }

    Rectangle {
        anchors.fill: parent
        color: Theme.hoverFill
        opacity: root.hovered ? 1 : 0
        radius: Theme.rowRadius
        visible: opacity > 0

        Behavior on opacity {
            NumberAnimation {
                duration: Theme.fadeDuration
            }
        }
    }

    Item {
        id: bearer

        anchors.bottom: parent.bottom
        anchors.left: parent.left
        anchors.right: meta.left
        anchors.top: parent.top
        // However high a font builds its letters, they stay in their row.
        clip: true

        Symbol {
            anchors.verticalCenter: parent.verticalCenter
            anchors.verticalCenterOffset: root._opticalOffset
            name: root.symbol
            strength: root.selected ? 0.92 : 0.5
            x: Theme.gap
        }

        Line {
            id: line

            anchors.fill: parent
            anchors.leftMargin: 32
            anchors.rightMargin: Theme.gap
            color: root._ink
            font.pixelSize: Theme.rowText
            text: root.title
        }
    }

    // What stands at the end of the row takes its room from the end of the title, and nothing else moves.
    Item {
        id: meta

        anchors.right: parent.right
        anchors.rightMargin: 4
        height: root.height
        width: root.copiedFlash ? copied.width + 8 : actions.present ? actions.width : root.pinned ? 24 : 0

        Line {
            id: copied

            color: root.selected ? Theme.accentText : Theme.secondary
            height: root.height
            text: L10n.texts[L10n.Copied]
            visible: root.copiedFlash
        }

        Symbol {
            anchors.right: parent.right
            anchors.rightMargin: (24 - width) / 2
            anchors.verticalCenter: parent.verticalCenter
            anchors.verticalCenterOffset: root._opticalOffset
            name: "pin.fill"
            size: 8
            strength: root.selected ? 0.92 : 0.35
            visible: root.pinned && !root.copiedFlash && !actions.present
        }

        FadingContent {
            id: actions

            anchors.right: parent.right
            anchors.verticalCenter: parent.verticalCenter
            anchors.verticalCenterOffset: root._opticalOffset
            shown: root._showsActions
            visible: !root.copiedFlash

            content: EntryActions {
                pinned: root.pinned

                onCopyClicked: root.copy()
                onPinClicked: root.store.togglePin(root.itemId)
                onRemoveClicked: root.store.remove(root.itemId)
                onShareClicked: root.handoff.share(root.itemId)
            }
        }
    }
}
