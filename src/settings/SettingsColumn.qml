import QtQuick
import Nimbarrow.Clipboard
import Nimbarrow.Preferences
import Nimbarrow.Settings
import Nimbarrow.Style

/// Everything that the user can set, and what the program says of itself.
Item {
    id: root

    required property Settings settings
    required property ClipboardStore store
    required property About about

    readonly property var _limits: [50, 100, 200]

    readonly property Item _focused: Window.activeFocusItem

    Component.onCompleted: {
        settings.refreshLaunchAtLogin();
        about.refresh();
    }

    /// Scrolls no farther than it must for all of what the keyboard has reached to be seen.
    function reveal(item: Item) {
        const top = item.mapToItem(column, 0, 0).y;
        const lowest = Math.max(0, page.contentHeight - page.height);
        const wanted = Math.max(Math.min(page.contentY, top - Theme.fadeLength), top + item.height + Theme.fadeLength - page.height);
        page.contentY = Math.max(0, Math.min(lowest, wanted));
    }

    on_FocusedChanged: {
        let ancestor = _focused;
        while (ancestor && ancestor !== column)
            ancestor = ancestor.parent;
        if (ancestor)
            reveal(_focused);
    }

    Flickable {
        id: page

        // Room for the ring around a control at the edge.
        anchors.fill: parent
        anchors.margins: -3
        boundsBehavior: Flickable.StopAtBounds
        clip: true
        contentHeight: column.height + 6
        pixelAligned: true

        Column {
            id: column

            spacing: 2
            width: root.width
            x: 3
            y: 3

            Line {
                Accessible.name: text
                Accessible.role: Accessible.Heading
                color: Theme.secondary
                font.weight: Font.DemiBold
                height: 16
                text: L10n.texts[L10n.Settings]
            }

            SettingsSwitches {
                settings: root.settings
                width: parent.width
            }

            SettingsNote {
                text: L10n.texts[L10n.SettingsNotSaved]
                visible: !root.settings.isSaved
                width: parent.width
            }

            SettingsNote {
                text: String(L10n.texts[L10n.LaunchAtLoginFailed]).arg(root.settings.launchAtLoginError)
                visible: root.settings.launchAtLoginError !== ""
                width: parent.width
            }

            SettingsNote {
                text: L10n.texts[L10n.OutsideApplicationsHint]
                visible: root.settings.runsOutsideApplications
                width: parent.width
            }

            SettingsNote {
                text: root.about.pasteRemark || L10n.texts[L10n.AccessibilityHint]
                visible: root.settings.pasteOnClick && !root.settings.accessibilityGranted
                width: parent.width
            }

            SettingsNote {
                text: root.about.hotKeyRemark
                visible: root.settings.hotKeyEnabled && text !== ""
                width: parent.width
            }

            SettingChoice {
                choices: root._limits.map(limit => limit.toString())
                chosen: root._limits.indexOf(root.settings.historyLimit)
                label: L10n.texts[L10n.HistoryItems]
                width: parent.width

                onChoiceMade: index => root.settings.setHistoryLimit(root._limits[index])
            }

            SettingChoice {
                choices: [L10n.texts[L10n.LanguageSystem], L10n.texts[L10n.LanguageUkrainian], L10n.texts[L10n.LanguageEnglish]]
                chosen: root.settings.language
                label: L10n.texts[L10n.Language]
                width: parent.width

                onChoiceMade: index => root.settings.setLanguage(index)
            }

            TextButton {
                height: 20
                text: L10n.texts[L10n.ClearHistory]

                onClicked: root.store.clear()
            }

            TextButton {
                height: 20
                text: L10n.texts[L10n.Donate]

                onClicked: root.about.openSupport()
            }

            Line {
                Accessible.name: text
                Accessible.role: Accessible.StaticText
                color: Theme.secondary
                font.pixelSize: Theme.metaText
                height: 20
                text: root.about.version
                width: parent.width
            }
        }
    }

    EdgeFades {
        flickable: page
    }

    // How much of the page is in view, beside it.
    Rectangle {
        anchors.left: parent.right
        anchors.leftMargin: Theme.gap
        color: Theme.hint
        height: root.height * page.visibleArea.heightRatio
        radius: width / 2
        visible: page.visibleArea.heightRatio < 1
        width: 3
        y: root.height * page.visibleArea.yPosition
    }
}
