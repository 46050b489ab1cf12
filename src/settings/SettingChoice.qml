import QtQuick
import Nimbarrow.Style

/// A setting that is one of a few: its name, and the picker behind it.
Item {
    id: root

    required property string label
    required property var choices
    required property int chosen

    signal choiceMade(index: int)

    implicitHeight: 24

    Line {
        anchors.left: parent.left
        anchors.right: picker.left
        anchors.rightMargin: Theme.gap
        height: parent.height
        text: root.label
    }

    SegmentedPicker {
        id: picker

        anchors.right: parent.right
        anchors.verticalCenter: parent.verticalCenter
        choices: root.choices
        chosen: root.chosen
        label: root.label
        width: 160

        onChoiceMade: index => root.choiceMade(index)
    }
}
