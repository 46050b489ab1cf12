import QtQuick

/// What can be pressed: with the pointer, with the Return and space keys once the Tab key has reached it, and by
/// assistive programs.
Item {
    id: root

    /// Says what it is or does, to assistive programs.
    required property string name
    /// Says the same to the eye, when the pointer has rested there for a while.
    property string help: ""
    /// How far outside it the pointer still hits it, in points.
    property real margin: 0
    /// Of the corners of the ring around it.
    property real ringRadius: Theme.smallRadius
    /// How far outside it the ring stands, in points; what is cut off at its edges has it inside.
    property real ringDistance: 2
    /// A double click counts as one.
    property bool once: false
    readonly property bool hovered: hover.hovered

    signal clicked

    function press() {
        HelpText.withdraw(root);
        clicked();
    }

    Accessible.name: name
    Accessible.role: Accessible.Button
    activeFocusOnTab: true

    Accessible.onPressAction: press()
    Component.onDestruction: HelpText.withdraw(root)
    Keys.onEnterPressed: press()
    Keys.onReturnPressed: press()
    Keys.onSpacePressed: press()
    onHoveredChanged: hovered && help !== "" ? HelpText.offer(root, help, Theme.helpDelay) : HelpText.withdraw(root)

    FocusRing {
        anchors.leftMargin: -root.ringDistance - root.margin / 2
        anchors.margins: -root.ringDistance
        anchors.rightMargin: -root.ringDistance - root.margin / 2
        radius: root.ringRadius
        shown: root.activeFocus
        z: 1
    }

    HoverHandler {
        id: hover

        margin: root.margin
    }

    // Takes the press for itself, so that what lies below is not clicked too.
    TapHandler {
        gesturePolicy: TapHandler.ReleaseWithinBounds
        margin: root.margin

        onTapped: {
            if (!root.once || tapCount === 1)
                root.press();
        }
    }
}
