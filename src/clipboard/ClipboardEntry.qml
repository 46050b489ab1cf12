import QtQuick
import Nimbarrow.Clipboard
import Nimbarrow.Style

/// What every entry of the history does, however it looks: a click puts it back on the clipboard, and its actions.
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
    required property Paster paster
    /// Identifier of the entry that the keyboard has selected, while it is used.
    required property var selection
    required property bool keyboardMode

    readonly property string title: summary !== "" ? summary : kindLabel
    readonly property bool selected: keyboardMode && selection === itemId
    readonly property bool hovered: hover.hovered
    /// The entry does not show all that its help text says.
    property bool helpWanted: false
    /// Shows for a moment that the click has copied the entry.
    property bool copiedFlash: false

    /// The entry was pasted, so the surface has done its work.
    signal collapseRequested

    function copy() {
        HelpText.withdraw(root);
        if (paster.pasteClicked(itemId))
            collapseRequested();
        else
            flashCopied();
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
        onTapped: root.copy()
    }
}
