import QtQuick

/// Makes its content when it is to be shown and drops it once it has faded away.
Loader {
    id: root

    required property bool shown
    property int fadeDuration: Theme.fadeDuration
    property int fadeEasing: Easing.Linear

    active: shown || opacity > 0
    opacity: shown ? 1 : 0

    Behavior on opacity {
        NumberAnimation {
            duration: root.fadeDuration
            easing.type: root.fadeEasing
        }
    }
}
