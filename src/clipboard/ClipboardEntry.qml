import QtQuick
import Nimbarrow.Clipboard
import Nimbarrow.Style

/// What every entry of the history does, however it looks: a click puts it back on the clipboard, a double click
/// opens it, and the pointer can carry it out of the surface.
Item {
    id: root

    // From the list.
    required property var itemId
    required property string symbol
    required property string summary
    required property string kindLabel
    required property bool pinned
    required property url imageUrl
    required property string help

    required property ClipboardStore store
    required property EntryHandoff handoff
    /// Identifier of the entry that the keyboard has selected, while it is used.
    required property var selection
    required property bool keyboardMode

    readonly property string title: summary !== "" ? summary : kindLabel
    readonly property bool selected: keyboardMode && selection === itemId
    readonly property bool hovered: hover.hovered
    /// The entry does not show all that its help text says.
    property bool helpWanted: false
    /// What hangs at the pointer that carries the entry.
    property Item face: root
    /// Shows for a moment that the click has copied the entry.
    property bool copiedFlash: false

    /// The entry was pasted, so the surface has done its work.
    signal collapseRequested
    /// The button is held down on the entry; the pointer has not moved.
    signal heldDown
    /// It is no longer, or the entry is being carried.
    signal letGo

    function copy() {
        HelpText.withdraw(root);
        if (handoff.paste(itemId))
            collapseRequested();
        else
            flashCopied();
    }

    function carry() {
        HelpText.withdraw(root);
        const id = itemId;
        const target = handoff;
        face.grabToImage(grab => target.drag(id, grab.image));
    }

    function flashCopied() {
        copiedFlash = true;
        flash.restart();
    }

    /// Makes the view fit for another entry.
    function reset() {
        flash.stop();
        copiedFlash = false;
        opacity = 1;
    }

    Accessible.description: kindLabel
    Accessible.name: title
    Accessible.role: Accessible.ListItem
    Accessible.selected: selected
    ListView.onReused: reset()

    Accessible.onPressAction: copy()
    Component.onDestruction: HelpText.withdraw(root)
    onHoveredChanged: hovered && helpWanted ? HelpText.offer(root, help, Theme.entryHelpDelay) : HelpText.withdraw(root)

    Timer {
        id: flash

        interval: Theme.flashDuration

        onTriggered: root.copiedFlash = false
    }

    HoverHandler {
        id: hover
    }

    TapHandler {
        longPressThreshold: Theme.longPress / 1000

        onDoubleTapped: root.handoff.open(root.itemId)
        onLongPressed: root.heldDown()
        onPressedChanged: {
            if (!pressed)
                root.letGo();
        }
        onSingleTapped: root.copy()
    }

    DragHandler {
        acceptedDevices: PointerDevice.Mouse | PointerDevice.TouchPad | PointerDevice.Stylus
        target: null

        onActiveChanged: {
            if (active)
                root.carry();
        }
    }
}
