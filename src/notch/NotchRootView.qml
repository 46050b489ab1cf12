pragma ComponentBehavior: Bound

import QtQuick
import Nimbarrow.Clipboard
import Nimbarrow.Notch
import Nimbarrow.Preferences
import Nimbarrow.Style

/// The whole panel: the black body that hangs over the notch, and in it what the mode shows.
HoverTrackingView {
    id: root

    required property NotchState notch
    required property NotchActions actions
    required property ClipboardStore store
    required property Paster paster
    required property Settings settings

    /// What is drawn; the window ends there.
    readonly property NotchShape shape: body

    NotchBody {
        id: body

        expandedSize: root.notch.expandedSize
        mode: root.notch.mode
        notchSize: root.notch.notchSize
        x: root.width / 2 - leftReach
    }

    // The growing body uncovers the content, which has its final place and size from the start.
    Item {
        clip: true
        height: body.height
        width: body.width
        x: body.x

        FadingContent {
            shown: root.notch.mode === NotchState.Peek
            x: body.leftReach - root.notch.notchSize.width / 2 - body.peekLeft

            content: PeekView {
                id: peek

                height: body.peekHeight
                leadingWidth: body.peekLeft
                lineWidth: body.peekRight
                notchWidth: root.notch.notchSize.width

                Component.onCompleted: content = root.notch.peek

                // A notice that is already gone is still to be seen while it fades.
                Connections {
                    function onPeekChanged() {
                        if (root.notch.hasPeek)
                            peek.content = root.notch.peek;
                    }

                    target: root.notch
                }
            }
        }

        FadingContent {
            shown: root.notch.mode === NotchState.Expanded
            x: body.leftReach - root.notch.expandedSize.width / 2

            content: ExpandedView {
                actions: root.actions
                height: root.notch.expandedSize.height
                notch: root.notch
                notchHeight: root.notch.notchSize.height
                notchWidth: root.notch.notchSize.width
                paster: root.paster
                settings: root.settings
                store: root.store
                width: root.notch.expandedSize.width
            }
        }
    }

    HelpLayer {
        anchors.fill: parent
    }
}
