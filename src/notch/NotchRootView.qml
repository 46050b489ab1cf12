pragma ComponentBehavior: Bound

import QtQuick
import Nimbarrow.Calendar
import Nimbarrow.Clipboard
import Nimbarrow.KeepAwake
import Nimbarrow.Notch
import Nimbarrow.NowPlaying
import Nimbarrow.Preferences
import Nimbarrow.Settings
import Nimbarrow.Style

/// The whole panel: the black body that hangs over the notch, and in it what the mode shows.
HoverTrackingView {
    id: root

    required property NotchState notch
    required property NotchActions actions
    required property ClipboardStore store
    required property EntryHandoff handoff
    required property Settings settings
    required property About about
    required property KeepAwake keepAwake
    required property OwlMotion owl
    required property NowPlayingModel player
    required property DayTimeline timeline

    /// What is drawn; the window ends there.
    readonly property NotchShape shape: body

    NotchBody {
        id: body

        grownSize: root.notch.hasPreview ? root.notch.previewSize : root.notch.expandedSize
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

            content: Item {
                id: surface

                height: root.notch.expandedSize.height
                // Still there under the preview: the button that opened it is held down on one of its views.
                opacity: root.notch.hasPreview ? 0 : 1
                width: root.notch.expandedSize.width

                Behavior on opacity {
                    NumberAnimation {
                        duration: Theme.fadeDuration
                    }
                }

                // From its file: a surface that nobody has opened takes no memory.
                Component.onCompleted: Qt.createComponent("ExpandedView.qml").createObject(surface, {
                    about: root.about,
                    actions: root.actions,
                    handoff: root.handoff,
                    keepAwake: root.keepAwake,
                    notch: root.notch,
                    owl: root.owl,
                    player: root.player,
                    settings: root.settings,
                    store: root.store,
                    timeline: root.timeline
                })
            }
        }

        FadingContent {
            shown: root.notch.hasPreview
            x: body.leftReach - root.notch.previewSize.width / 2

            content: PreviewOverlay {
                id: preview

                height: root.notch.previewSize.height - y - Theme.insetY
                source: ""
                width: root.notch.previewSize.width - 2 * x
                x: Theme.insetX
                y: root.notch.notchSize.height + Theme.gap

                Component.onCompleted: source = root.store.imageUrl(root.notch.preview)

                // One that is already closed is still to be seen while it fades.
                Connections {
                    function onPreviewChanged() {
                        if (root.notch.hasPreview)
                            preview.source = root.store.imageUrl(root.notch.preview);
                    }

                    target: root.notch
                }
            }
        }
    }

    HelpLayer {
        anchors.fill: parent
        muted: root.notch.mode !== NotchState.Expanded || root.notch.hasPreview
    }
}
