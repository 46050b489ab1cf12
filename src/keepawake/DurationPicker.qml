pragma ComponentBehavior: Bound

import QtQuick
import Nimbarrow.KeepAwake
import Nimbarrow.Preferences
import Nimbarrow.Style

/// Lies over the whole surface and shows the durations below what it is about; a click anywhere else closes it.
FadingContent {
    id: root

    required property KeepAwake keepAwake
    /// What the durations stand below.
    required property Item owner

    signal chosen(id: int)
    signal dismissed

    fadeDuration: Motion.reduced ? 0 : 180
    fadeEasing: Easing.OutQuad

    content: Item {
        anchors.fill: parent
        enabled: root.shown

        // Whoever has asked for it from the keyboard goes on there.
        Component.onCompleted: {
            if (root.owner.activeFocus)
                nextItemInFocusChain().forceActiveFocus(Qt.TabFocusReason);
        }
        // Escape goes back to the owl, and an arrow on to the history.
        Keys.onPressed: event => {
            event.accepted = event.key === Qt.Key_Escape;
            if (event.accepted)
                root.owner.forceActiveFocus(Qt.TabFocusReason);
            if (event.accepted || event.key >= Qt.Key_Left && event.key <= Qt.Key_Down)
                root.dismissed();
        }

        TapHandler {
            gesturePolicy: TapHandler.ReleaseWithinBounds

            onTapped: root.dismissed()
        }

        Rectangle {
            id: panel

            // Read once: what fades away stays where it was.
            property point _below

            Accessible.name: L10n.texts[L10n.KeepAwake]
            Accessible.role: Accessible.PopupMenu
            border.color: Theme.hoverFill
            border.width: 1
            color: Theme.surface
            height: rows.height + 8
            radius: Theme.rowRadius + 2
            width: Math.max(64, rows.implicitWidth + 8)
            x: Math.round(Math.max(Theme.insetX, Math.min(root.width - width - Theme.insetX, _below.x - width / 2)))
            y: Math.round(Math.max(0, Math.min(root.height - height - Theme.insetY, _below.y)))

            Component.onCompleted: _below = root.mapFromItem(root.owner, root.owner.width / 2, root.owner.height + 4)

            Rectangle {
                anchors.fill: parent
                color: Theme.restingFill
                radius: parent.radius
            }

            // What lies below is not what the pointer is over.
            HoverHandler {
                blocking: true
            }

            // A press between the rows is no press beside the picker.
            TapHandler {
                gesturePolicy: TapHandler.ReleaseWithinBounds
            }

            Column {
                id: rows

                x: 4
                y: 4

                Repeater {
                    model: root.keepAwake.choices

                    Choice {
                        required property int modelData

                        label: modelData > 0 ? modelData + " " + L10n.texts[L10n.HoursSuffix] : "∞"
                        width: panel.width - 8

                        onClicked: {
                            if (activeFocus)
                                root.owner.forceActiveFocus(Qt.TabFocusReason);
                            root.chosen(modelData);
                        }
                    }
                }
            }
        }
    }
}
