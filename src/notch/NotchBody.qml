import QtQuick
import Nimbarrow.Notch

/// The black body: its form in every mode, and the way from one to the other.
NotchShape {
    id: root

    required property int mode
    required property size notchSize
    required property size expandedSize

    /// How far a notice reaches beside the notch.
    readonly property real peekLeft: 46
    readonly property real peekRight: 150
    readonly property real peekHeight: notchSize.height + 6

    // How far the body reaches from the middle of the notch, which is the middle of the window in every mode: the
    // window may jump to another width, the body stays where it is.
    property real leftReach: _expanded ? expandedSize.width / 2 : _half + (_peek ? peekLeft + _peekFlare : 0)
    property real rightReach: _expanded ? expandedSize.width / 2 : _half + (_peek ? peekRight + _peekFlare : 0)

    readonly property bool _peek: mode === NotchState.Peek
    readonly property bool _expanded: mode === NotchState.Expanded
    readonly property real _half: notchSize.width / 2
    readonly property real _peekFlare: 4

    bottomRadius: _expanded ? 22 : _peek ? 12 : 8
    height: _expanded ? expandedSize.height : _peek ? peekHeight : notchSize.height
    topRadius: _expanded ? 10 : _peek ? _peekFlare : 0
    width: leftReach + rightReach

    SurfaceMotion on bottomRadius {}
    SurfaceMotion on height {}
    SurfaceMotion on leftReach {}
    SurfaceMotion on rightReach {}
    SurfaceMotion on topRadius {}
}
