import QtQuick
import Nimbarrow.Notch

/// The black body: its form in every mode, and the way from one to the other.
NotchShape {
    id: root

    required property int mode
    required property size notchSize
    /// Of the grown surface: what the panel shows at its largest now.
    required property size grownSize

    /// How far a notice reaches beside the notch, and how high it is.
    readonly property real peekLeft: 46
    readonly property real peekRight: 150
    readonly property real peekHeight: notchSize.height + _peekBelow

    /// How far the body reaches from the middle of the notch, which is the middle of the window in every mode: the
    /// window may jump to another width, the body stays where it is.
    readonly property real leftReach: notchSize.width / 2 + _beyondLeft
    readonly property real rightReach: notchSize.width / 2 + _beyondRight

    readonly property bool _peek: mode === NotchState.Peek
    readonly property bool _expanded: mode === NotchState.Expanded
    readonly property real _peekFlare: 4
    readonly property real _peekBelow: 6
    readonly property real _expandedSide: (grownSize.width - notchSize.width) / 2

    // The body beyond the notch springs; the notch itself, when it is another one, is simply there.
    property real _beyondLeft: _expanded ? _expandedSide : _peek ? peekLeft + _peekFlare : 0
    property real _beyondRight: _expanded ? _expandedSide : _peek ? peekRight + _peekFlare : 0
    property real _beyondBelow: _expanded ? grownSize.height - notchSize.height : _peek ? _peekBelow : 0

    bottomRadius: _expanded ? 22 : _peek ? 12 : 8
    height: notchSize.height + _beyondBelow
    topRadius: _expanded ? 10 : _peek ? _peekFlare : 0
    width: leftReach + rightReach

    SurfaceMotion on _beyondBelow {}
    SurfaceMotion on _beyondLeft {}
    SurfaceMotion on _beyondRight {}
    SurfaceMotion on bottomRadius {}
    SurfaceMotion on topRadius {}
}
