import QtQuick
import Nimbarrow.KeepAwake
import Nimbarrow.Style

/// The owl as a button.
Pressable {
    id: root

    required property OwlMotion motion
    required property bool awake
    /// Whether somebody can see it.
    required property bool active
    /// In points; the owl's width.
    property real size: 24

    implicitHeight: owl.implicitHeight
    implicitWidth: owl.implicitWidth + 4
    name: help

    OwlView {
        id: owl

        active: root.active
        anchors.centerIn: parent
        awake: root.awake
        motion: root.motion
        // Brighter under the pointer, as the other buttons are.
        opacity: root.hovered || root.awake ? 1 : 0.85
        reduceMotion: Motion.reduced
        size: root.size

        Behavior on opacity {
            NumberAnimation {
                duration: Theme.fadeDuration
            }
        }
    }
}
