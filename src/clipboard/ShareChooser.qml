pragma ComponentBehavior: Bound

import QtQuick
import Nimbarrow.Clipboard
import Nimbarrow.Preferences
import Nimbarrow.Style

/// What can be done with what is shared, over everything else: a row for each. A click beside them closes it.
/// Whoever shows it disables what lies below.
FocusScope {
    id: root

    /// None any more while the chooser fades away.
    required property SharePresenter presenter

    readonly property int _padding: 6

    function _cancel() {
        if (presenter)
            presenter.cancel();
    }

    function _choose(index: int) {
        if (presenter)
            presenter.choose(index);
    }

    Accessible.name: L10n.texts[L10n.Share]
    Accessible.role: Accessible.PopupMenu

    Component.onCompleted: {
        // Once, so that the rows stay while they fade.
        rows.model = presenter.choices;
        forceActiveFocus();
    }
    Keys.onDownPressed: nextItemInFocusChain(true).forceActiveFocus(Qt.TabFocusReason)
    Keys.onEscapePressed: _cancel()
    Keys.onUpPressed: nextItemInFocusChain(false).forceActiveFocus(Qt.BacktabFocusReason)

    TapHandler {
        gesturePolicy: TapHandler.ReleaseWithinBounds

        onTapped: root._cancel()
    }

    Rectangle {
        anchors.centerIn: parent
        color: Theme.surface
        height: list.height + 2 * root._padding
        radius: 12
        width: 220

        Rectangle {
            anchors.fill: parent
            color: Theme.restingFill
            radius: parent.radius
        }

        // A click between the rows is none beside them.
        TapHandler {
            gesturePolicy: TapHandler.ReleaseWithinBounds
        }

        Column {
            id: list

            width: parent.width - 2 * root._padding
            x: root._padding
            y: root._padding

            Line {
                color: Theme.secondary
                font.weight: Font.DemiBold
                height: 24
                leftPadding: Theme.gap
                text: L10n.texts[L10n.Share]
                width: parent.width
            }

            Repeater {
                id: rows

                delegate: ShareChoiceRow {
                    width: list.width

                    onClicked: root._choose(index)
                }
            }

            Line {
                color: Theme.hint
                font.pixelSize: Theme.rowText
                height: Theme.rowHeight
                leftPadding: Theme.gap
                text: L10n.texts[L10n.ShareNothing]
                visible: rows.count === 0
                width: parent.width
            }
        }
    }
}
