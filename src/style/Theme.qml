pragma Singleton

import QtQuick
import Nimbarrow.Style

/// Every size, colour and duration of the interface. Lengths in points on a grid of 4, durations in
/// milliseconds.
QtObject {
    id: root

    readonly property color surface: "black"

    // White in five strengths, and no greys.
    readonly property color title: strength(0.92)
    readonly property color secondary: strength(0.5)
    readonly property color hint: strength(0.35)
    readonly property color hoverFill: strength(0.15)
    readonly property color restingFill: strength(0.12)

    /// What the keyboard has selected: the desktop's own colour for that.
    readonly property color accent: desktop.highlight
    readonly property color accentText: accent.hslLightness > 0.65 ? surface : title
    readonly property color knob: "white"
    /// Keeps symbols readable on a picture.
    readonly property color scrim: Qt.rgba(0, 0, 0, 0.65)
    /// The present moment.
    readonly property color now: "#ff453a"
    readonly property color tooltip: Qt.rgba(0.16, 0.16, 0.16, 1)
    readonly property color dropField: Qt.rgba(0, 0, 0, 0.85)

    readonly property int rowHeight: 30
    readonly property int rowSpacing: 1
    readonly property int thumbWidth: 60
    readonly property int thumbHeight: 44
    readonly property int artworkSize: 78
    readonly property int gap: 8
    readonly property int thumbGap: 6
    /// How far a list fades before its edge.
    readonly property int fadeLength: 28

    readonly property int smallRadius: 5
    readonly property int thumbRadius: 6
    readonly property int rowRadius: 7
    readonly property int artworkRadius: 12

    // Of the surface's content against the window that it fills.
    readonly property int insetX: 29
    readonly property int insetY: 15

    readonly property int pickerText: 9
    readonly property int timeText: 9
    readonly property int metaText: 10
    readonly property int smallText: 11
    readonly property int rowText: 12

    readonly property int fadeDuration: Motion.reduced ? 0 : 120
    /// Never nothing: what has moved within one frame would not learn that the pointer is over it now.
    readonly property int slideDuration: Motion.reduced ? 1 : 160
    readonly property int openDuration: Motion.reduced ? 0 : 180
    readonly property int hintDuration: Motion.reduced ? 0 : 150
    /// The pointer rests this long before a help text shows.
    readonly property int helpDelay: 600
    /// And this long on an entry, where a text that comes at once would be in the way.
    readonly property int entryHelpDelay: 1000
    readonly property int flashDuration: 900
    /// The pointer may leave the day for so long before it folds.
    readonly property int foldDelay: 250
    /// A press that lasts this long is no click.
    readonly property int longPress: 400

    readonly property SystemPalette desktop: SystemPalette {}

    function strength(alpha: real): color {
        return Qt.rgba(1, 1, 1, alpha);
    }
}
