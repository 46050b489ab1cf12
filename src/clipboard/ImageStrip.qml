pragma ComponentBehavior: Bound

import QtQuick
import Nimbarrow.Clipboard
import Nimbarrow.Style

/// The images of the history side by side.
Item {
    id: root

    required property ClipboardStore store
    required property EntryHandoff handoff
    required property var selection
    required property bool keyboardMode

    readonly property int _duration: Motion.reduced ? 1 : Springs.stripDuration

    signal collapseRequested
    signal previewRequested(id: var)
    signal previewDone

    implicitHeight: Theme.thumbHeight

    EntryList {
        id: list

        // Room for the ring around a selected image.
        anchors.fill: parent
        anchors.margins: -2
        entries: root.store.imageItems
        keyboardMode: root.keyboardMode
        leftMargin: 2
        orientation: ListView.Horizontal
        preferredHighlightBegin: 2
        preferredHighlightEnd: width - Theme.fadeLength
        rightMargin: 2
        selection: root.selection
        spacing: Theme.thumbGap

        add: Transition {
            NumberAnimation {
                duration: root._duration
                easing: Springs.strip
                from: 0
                property: "opacity"
                to: 1
            }
        }
        displaced: Transition {
            NumberAnimation {
                duration: root._duration
                easing: Springs.strip
                property: "x"
            }
            // An image that moves while it still comes in would stay half visible.
            NumberAnimation {
                duration: Theme.slideDuration
                property: "opacity"
                to: 1
            }
        }
        move: displaced

        delegate: ClipboardThumb {
            handoff: root.handoff
            keyboardMode: root.keyboardMode
            selection: root.selection
            store: root.store
            y: 2

            onCollapseRequested: root.collapseRequested()
            onPreviewDone: root.previewDone()
            onPreviewRequested: root.previewRequested(itemId)
        }

        // A wheel that only turns one way moves the strip as well.
        WheelHandler {
            onWheel: event => list.flick(event.angleDelta.y * 6, 0)
        }
    }

    EdgeFades {
        flickable: list
    }
}
