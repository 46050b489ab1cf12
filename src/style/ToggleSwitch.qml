import QtQuick

/// A label and a switch behind it. It shows what is; who uses it changes that when it is toggled.
Item {
    id: root

    required property string label
    required property bool checked

    signal toggled(checked: bool)

    function toggle() {
        toggled(!checked);
    }

    Accessible.checkable: true
    Accessible.checked: checked
    Accessible.name: label
    Accessible.role: Accessible.CheckBox
    activeFocusOnTab: true
    implicitHeight: 22

    Accessible.onPressAction: toggle()
    Accessible.onToggleAction: toggle()
    Keys.onEnterPressed: toggle()
    Keys.onReturnPressed: toggle()
    Keys.onSpacePressed: toggle()

    Line {
        anchors.left: parent.left
        anchors.right: track.left
        anchors.rightMargin: Theme.gap
        height: parent.height
        text: root.label
    }

    Rectangle {
        id: track

        anchors.right: parent.right
        anchors.verticalCenter: parent.verticalCenter
        color: root.checked ? Theme.accent : Theme.hoverFill
        height: 16
        radius: height / 2
        width: 28

        Behavior on color {
            ColorAnimation {
                duration: Theme.fadeDuration
            }
        }

        Rectangle {
            color: Theme.knob
            height: 12
            radius: 6
            width: 12
            x: root.checked ? parent.width - width - 2 : 2
            y: 2

            Behavior on x {
                NumberAnimation {
                    duration: Theme.slideDuration
                    easing.type: Easing.OutCubic
                }
            }
        }

        FocusRing {
            shown: root.activeFocus
        }
    }

    TapHandler {
        gesturePolicy: TapHandler.ReleaseWithinBounds

        onTapped: root.toggle()
    }
}
