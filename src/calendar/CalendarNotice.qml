import QtQuick
import Nimbarrow.Calendar
import Nimbarrow.Preferences
import Nimbarrow.Style

/// Stands in the timeline's place while there is nothing to show, and says why.
Item {
    id: root

    required property DayTimeline timeline

    readonly property bool _denied: timeline.access === CalendarAccess.Denied
    readonly property bool _granted: timeline.access === CalendarAccess.Granted

    Row {
        anchors.centerIn: parent
        spacing: Theme.gap

        Symbol {
            anchors.verticalCenter: parent.verticalCenter
            name: root._denied ? "calendar.badge.exclamationmark" : "calendar"
            size: 14
            strength: root._denied ? 0.92 : 0.5
            visible: !root._granted
        }

        Line {
            Accessible.name: text
            Accessible.role: Accessible.StaticText
            anchors.verticalCenter: parent.verticalCenter
            color: Theme.secondary
            text: L10n.texts[root._granted ? L10n.NothingToday : L10n.CalendarNoAccess]
            visible: root._granted || root._denied
        }

        TextButton {
            anchors.verticalCenter: parent.verticalCenter
            emphasized: true
            size: Theme.smallText
            text: L10n.texts[root._denied ? L10n.OpenSystemSettings : L10n.ShowTodaysCalendar]
            visible: !root._granted && (!root._denied || root.timeline.canShowRefusal)

            onClicked: root.timeline.requestAccess()
        }
    }
}
