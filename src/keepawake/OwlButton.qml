import QtQuick
import Nimbarrow.KeepAwake
import Nimbarrow.Style

/// The owl as a button.
Item {
    id: root

    required property OwlMotion motion
    required property bool awake
    /// Says what the button does, to the eye and to assistive programs.
    required property string help
    /// Whether somebody can see it.
    required property bool active
    /// In points; the owl's width.
    property real size: 24
    readonly property bool hovered: hover.hovered

    signal clicked

    Accessible.name: help
    Accessible.role: Accessible.Button
    implicitHeight: owl.implicitHeight
    implicitWidth: owl.implicitWidth + 4

    Accessible.onPressAction: clicked()
    Component.onDestruction: HelpText.withdraw(root)
    onHoveredChanged: hovered ? HelpText.offer(root, help, Theme.helpDelay) : HelpText.withdraw(root)

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

    HoverHandler {
        id: hover
    }

    // Takes the press for itself, so that what lies below is not clicked too.
    TapHandler {
        gesturePolicy: TapHandler.ReleaseWithinBounds

        onTapped: {
            HelpText.withdraw(root);
            root.clicked();
        }
    }
}
