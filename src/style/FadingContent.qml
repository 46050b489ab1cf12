import QtQuick

/// Makes its content when it is to be shown, fades it in, and drops it once it has faded away.
Item {
    id: root

    required property bool shown
    property alias content: content.delegate
    property int fadeDuration: Theme.fadeDuration
    property int fadeEasing: Easing.Linear
    readonly property bool present: shown || _presence > 0

    property real _presence: shown ? 1 : 0

    implicitHeight: childrenRect.height
    implicitWidth: childrenRect.width
    opacity: _presence

    Behavior on _presence {
        NumberAnimation {
            duration: root.fadeDuration
            easing.type: root.fadeEasing
        }
    }

    // In Qt 6.4 a Loader cannot make a component that is bound to the file it stands in; a repeater can.
    Repeater {
        id: content

        model: root.present ? 1 : 0
    }
}
