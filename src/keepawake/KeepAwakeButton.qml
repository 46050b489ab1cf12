import QtQuick
import Nimbarrow.KeepAwake
import Nimbarrow.Preferences
import Nimbarrow.Style

/// The owl that keeps the computer awake, and the time that it still will. The owl stands at the right end and
/// stays there; the time grows to the left of it.
Item {
    id: root

    required property KeepAwake keepAwake
    required property OwlMotion motion
    /// What the picker may cover.
    required property Item surface
    /// Whether the surface is open; the owl stands still while it is not.
    required property bool active

    property bool pickerOpen: false

    implicitHeight: owl.implicitHeight
    implicitWidth: owl.implicitWidth + (keepAwake.isActive ? time.implicitWidth + 4 : 0)

    Component.onCompleted: keepAwake.refresh()
    onActiveChanged: {
        // There is none yet while the views are being made.
        keepAwake?.refresh();
        if (!active)
            pickerOpen = false;
    }

    Line {
        id: time

        Accessible.name: text
        Accessible.role: Accessible.StaticText
        anchors.right: owl.left
        anchors.rightMargin: 4
        anchors.verticalCenter: parent.verticalCenter
        color: Theme.secondary
        font.pixelSize: text === "∞" ? 16 : Theme.smallText
        text: root.keepAwake.timeLeft
        visible: root.keepAwake.isActive
    }

    OwlButton {
        id: owl

        active: root.active
        anchors.right: parent.right
        anchors.verticalCenter: parent.verticalCenter
        awake: root.keepAwake.isActive
        help: L10n.texts[root.keepAwake.isActive ? L10n.AllowSleep : L10n.KeepAwake]
        motion: root.motion

        onClicked: {
            if (root.keepAwake.isActive)
                root.keepAwake.deactivate();
            else
                root.pickerOpen = !root.pickerOpen;
        }
    }

    DurationPicker {
        anchors.fill: parent
        keepAwake: root.keepAwake
        owner: owl
        parent: root.surface
        shown: root.pickerOpen
        z: 100

        onChosen: id => {
            root.pickerOpen = false;
            root.keepAwake.choose(id);
        }
        onDismissed: root.pickerOpen = false
    }
}
