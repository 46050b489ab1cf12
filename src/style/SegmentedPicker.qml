pragma ComponentBehavior: Bound

import QtQuick

/// A few choices side by side, of which one is chosen. It shows what is; who uses it changes that.
Rectangle {
    id: root

    /// Says what is chosen here, to assistive programs.
    required property string label
    required property var choices
    required property int chosen

    // The count tells when the choices are there.
    readonly property Item _chosenItem: all.count > 0 ? all.itemAt(chosen) : null

    signal choiceMade(index: int)

    Accessible.name: label
    Accessible.role: Accessible.Grouping
    activeFocusOnTab: true
    color: Theme.restingFill
    implicitHeight: 20
    implicitWidth: 160
    radius: Theme.thumbRadius

    Keys.onLeftPressed: choiceMade(Math.max(0, chosen - 1))
    Keys.onRightPressed: choiceMade(Math.min(all.count - 1, chosen + 1))

    Rectangle {
        color: Theme.accent
        height: root.height - 2
        radius: root.radius - 1
        visible: root._chosenItem !== null
        width: root._chosenItem?.width ?? 0
        x: 1 + (root._chosenItem?.x ?? 0)
        y: 1

        Behavior on x {
            NumberAnimation {
                duration: Theme.slideDuration
                easing.type: Easing.OutCubic
            }
        }
    }

    Row {
        id: choicesRow

        // What the texts leave is theirs in equal parts.
        readonly property real _padding: (width - together.advanceWidth) / Math.max(1, all.count)

        anchors.fill: parent
        anchors.margins: 1

        Repeater {
            id: all

            model: root.choices

            // Not the text itself: in a page that scrolls, a text that is pressed loses the press to the page.
            Item {
                id: choice

                required property int index
                required property string modelData

                readonly property bool _isChosen: index === root.chosen

                Accessible.checkable: true
                Accessible.checked: _isChosen
                Accessible.name: modelData
                Accessible.role: Accessible.RadioButton
                height: root.height - 2
                width: line.implicitWidth + choicesRow._padding

                Accessible.onPressAction: root.choiceMade(index)
                Accessible.onToggleAction: root.choiceMade(index)

                Line {
                    id: line

                    anchors.fill: parent
                    color: choice._isChosen ? Theme.accentText : hover.hovered ? Theme.title : Theme.secondary
                    font: together.font
                    horizontalAlignment: Text.AlignHCenter
                    text: choice.modelData
                }

                HoverHandler {
                    id: hover
                }

                TapHandler {
                    gesturePolicy: TapHandler.ReleaseWithinBounds

                    onTapped: root.choiceMade(choice.index)
                }
            }
        }
    }

    TextMetrics {
        id: together

        font.pixelSize: Theme.pickerText
        text: root.choices.join("")
    }

    FocusRing {
        shown: root.activeFocus
    }
}
