import QtQuick
import Nimbarrow.Style

/// The spring of the surface, for one of the values that give it its form.
Behavior {
    NumberAnimation {
        duration: Motion.reduced ? 0 : Springs.surfaceDuration
        easing: Springs.surface
    }
}
