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

/// The grown surface: a header beside the notch, the content below, and a hint over all while something is
/// dragged over it.
Item {
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

    anchors.fill: parent

    Component.onDestruction: handoff.sharing?.cancel()

    // The surface's height without the day; the day hangs below what that leaves.
    readonly property real _withoutDay: 240 + notch.notchSurplus.height
    readonly property real _aboveDay: 10
    readonly property real _mainHeight: _withoutDay - notch.notchSize.height - 2 * Theme.insetY

    // What the header may use on either side of the notch.
    readonly property real _headerSide: Math.max(0, (width - notch.notchSize.width) / 2 - Theme.insetX - Theme.gap)

    Line {
        font.weight: Font.DemiBold
        height: root.notch.notchSize.height
        text: Application.name
        // Beside a very wide notch not even an ellipsis has room.
        visible: width > Theme.insetX
        width: root._headerSide
        x: Theme.insetX
    }

    Row {
        anchors.right: parent.right
        anchors.rightMargin: Theme.insetX
        height: root.notch.notchSize.height
        spacing: Theme.gap

        IconButton {
            active: root.notch.showSettings
            anchors.verticalCenter: parent.verticalCenter
            help: L10n.texts[L10n.Settings]
            symbol: "gearshape"

            onClicked: root.notch.setShowSettings(!root.notch.showSettings)
        }

        KeepAwakeButton {
            active: root.notch.mode === NotchState.Expanded
            anchors.verticalCenter: parent.verticalCenter
            keepAwake: root.keepAwake
            motion: root.owl
            surface: menus
        }
    }

    Item {
        id: content

        anchors.bottom: parent.bottom
        anchors.bottomMargin: Theme.insetY
        anchors.left: parent.left
        anchors.leftMargin: Theme.insetX
        anchors.right: parent.right
        anchors.rightMargin: Theme.insetX
        anchors.top: parent.top
        anchors.topMargin: root.notch.notchSize.height + Theme.insetY
        enabled: !root.handoff.sharing
        // What shines through the hint must not be taken for a part of it.
        opacity: 1 - 0.9 * field.opacity

        FadingContent {
            anchors.fill: parent
            fadeDuration: Theme.hintDuration
            fadeEasing: Easing.InOutQuad
            shown: !root.notch.showSettings

            content: Item {
                anchors.fill: parent

                NowPlayingColumn {
                    id: player

                    height: root._mainHeight
                    player: root.player
                    shown: root.notch.mode === NotchState.Expanded
                    width: 150

                    onDragEnded: root.actions.release()
                    onDragStarted: root.actions.hold()
                }

                ClipboardColumn {
                    anchors.left: player.right
                    anchors.leftMargin: Theme.insetY
                    anchors.right: parent.right
                    handoff: root.handoff
                    height: root._mainHeight
                    keyboardMode: root.notch.keyboardMode
                    selection: root.notch.selection
                    store: root.store

                    onCollapseRequested: root.actions.collapse()
                    onPreviewDone: root.actions.closePreview()
                    onPreviewRequested: id => root.actions.preview(id)
                }

                FadingContent {
                    id: day

                    height: Math.max(8, root.height - root._withoutDay - root._aboveDay)
                    shown: root.settings.showCalendar
                    width: parent.width
                    y: root._mainHeight + root._aboveDay

                    content: DayTimelineView {
                        id: view

                        // It outlives what it stands in by a moment in which the mode may change.
                        readonly property NotchState notch: root.notch

                        active: view.notch.mode === NotchState.Expanded
                        height: day.height
                        overlay: menus
                        timeline: root.timeline
                        unfolded: view.notch.calendarExpanded
                        width: day.width

                        onFoldRequested: view.notch.setCalendarExpanded(false)
                        onUnfoldRequested: view.notch.setCalendarExpanded(true)
                    }
                }
            }
        }

        FadingContent {
            anchors.fill: parent
            fadeDuration: Theme.hintDuration
            fadeEasing: Easing.InOutQuad
            shown: root.notch.showSettings

            content: SettingsColumn {
                about: root.about
                anchors.fill: parent
                settings: root.settings
                store: root.store
            }
        }
    }

    // The surface stays for as long as the question does, and the other way round.
    Connections {
        function onSharingChanged() {
            if (root.handoff.sharing)
                root.actions.hold();
            else
                root.actions.release();
        }

        target: root.handoff
    }

    // Below whatever lies over the content.
    Rectangle {
        id: field

        anchors.fill: content
        // A list leaves its ends room for the ring around an entry.
        anchors.margins: -2
        color: Theme.dropField
        opacity: Math.max(dropHint.opacity, chooser.opacity)
        visible: opacity > 0
    }

    FadingContent {
        id: chooser

        anchors.fill: content
        shown: root.handoff.sharing?.asks ?? false

        content: ShareChooser {
            anchors.fill: parent
            presenter: root.handoff.sharing
        }
    }

    // Where the header's menus open.
    Item {
        id: menus

        anchors.fill: parent
    }

    // Below the notch, which would hide a part of its outline.
    DropHint {
        id: dropHint

        anchors.fill: content
        shown: root.notch.dropTargeted
    }
}
