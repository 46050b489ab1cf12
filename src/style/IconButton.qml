import QtQuick

/// A small button that is one symbol.
Item {
    id: root

    required property string symbol
    /// Says what the button does, to the eye and to assistive programs.
    required property string help
    /// In points of type.
    property real size: Theme.smallText
    /// Stands for something that is on.
    property bool active: false
    /// How white it is when nothing happens to it.
    property real restingStrength: 0.5
    /// A double click counts as one.
    property bool once: false
    readonly property bool hovered: hover.hovered

    signal clicked

    Accessible.name: help
    Accessible.role: Accessible.Button
    activeFocusOnTab: true
    implicitHeight: 24
    implicitWidth: 24

    Accessible.onPressAction: clicked()
    Keys.onEnterPressed: clicked()
    Keys.onReturnPressed: clicked()
    Keys.onSpacePressed: clicked()
    Component.onDestruction: HelpText.withdraw(root)
    onHoveredChanged: hovered ? HelpText.offer(root, help, Theme.helpDelay) : HelpText.withdraw(root)

    Symbol {
        anchors.centerIn: parent
        name: root.symbol
        size: root.size
        strength: root.hovered || root.active ? 0.92 : root.restingStrength

        Behavior on strength {
            NumberAnimation {
                duration: Theme.fadeDuration
            }
        }
    }

    FocusRing {
        radius: Theme.smallRadius
        shown: root.activeFocus
    }

    HoverHandler {
        id: hover
    }

    // Takes the press for itself, so that what lies below is not clicked too.
    TapHandler {
        gesturePolicy: TapHandler.ReleaseWithinBounds

        onTapped: {
            HelpText.withdraw(root);
            if (!root.once || tapCount === 1)
                root.clicked();
        }
    }
}
