import QtQuick
import Nimbarrow.Clipboard
import Nimbarrow.Style

/// A list of entries that come, go and move, and that keeps the selected one in view.
ListView {
    id: root

    required property ClipboardListModel entries
    required property var selection
    required property bool keyboardMode

    boundsBehavior: Flickable.StopAtBounds
    cacheBuffer: Theme.rowHeight * 2
    clip: true
    currentIndex: -1
    highlightFollowsCurrentItem: true
    highlightMoveDuration: Theme.slideDuration
    highlightRangeMode: ListView.ApplyRange
    // A mouse carries entries away, where a finger moves the list.
    interactive: !mouse.active
    model: entries
    pixelAligned: true
    reuseItems: true

    add: Transition {
        NumberAnimation {
            duration: Theme.slideDuration
            from: 0
            property: "opacity"
            to: 1
        }
    }
    displaced: Transition {
        NumberAnimation {
            duration: Theme.slideDuration
            easing.type: Easing.OutCubic
            properties: "x,y"
        }
        // An entry that moves while it still comes in would stay half visible.
        NumberAnimation {
            duration: Theme.slideDuration
            property: "opacity"
            to: 1
        }
    }
    move: displaced
    remove: Transition {
        NumberAnimation {
            duration: Theme.fadeDuration
            property: "opacity"
            to: 0
        }
    }

    Component.onCompleted: currentIndex = keyboardMode ? entries.rowOf(selection) : -1
    onMovingChanged: HelpText.dismiss()
    onSelectionChanged: currentIndex = keyboardMode ? entries.rowOf(selection) : -1

    PointHandler {
        id: mouse

        acceptedDevices: PointerDevice.Mouse | PointerDevice.TouchPad | PointerDevice.Stylus
    }
}
