pragma Singleton

import QtQuick

/// The help text that shows now. There is one pointer, so there is at most one.
QtObject {
    id: root

    /// What the text is about; null when nothing is.
    property Item owner: null
    property string text: ""
    /// The pointer has rested on the owner for long enough.
    property bool shown: false

    readonly property Timer _rest: Timer {
        onTriggered: root.shown = root.owner !== null
    }

    function offer(item: Item, help: string, delay: int) {
        owner = item;
        text = help;
        shown = false;
        _rest.interval = delay;
        _rest.restart();
    }

    function withdraw(item: Item) {
        if (owner === item)
            dismiss();
    }

    /// Nobody wants to read it now, whatever it is about.
    function dismiss() {
        owner = null;
        shown = false;
        _rest.stop();
    }
}
