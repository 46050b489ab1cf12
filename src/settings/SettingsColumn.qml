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

    readonly property list<int> _limits: [50, 100, 200]

    Flickable {
        id: page

        anchors.fill: parent
        boundsBehavior: Flickable.StopAtBounds
        clip: true
        contentHeight: column.height
        pixelAligned: true

        Column {
            id: column

            spacing: 2
            width: page.width

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
                text: root.settings.launchAtLoginError
                visible: text !== ""
                width: parent.width
            }

            SettingsNote {
                text: L10n.texts[L10n.OutsideApplicationsHint]
                visible: root.settings.runsOutsideApplications
                width: parent.width
            }

            SettingsNote {
                text: L10n.texts[L10n.AccessibilityHint]
                visible: root.settings.pasteOnClick && !root.settings.accessibilityGranted
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

            Item {
                height: 20
                width: parent.width

                TextButton {
                    id: clear

                    height: parent.height
                    text: L10n.texts[L10n.ClearHistory]

                    onClicked: root.store.clear()
                }

                TextButton {
                    anchors.left: clear.right
                    anchors.leftMargin: 2 * Theme.gap
                    height: parent.height
                    text: L10n.texts[L10n.Donate]

                    onClicked: root.about.openSupport()
                }

                Line {
                    Accessible.name: text
                    Accessible.role: Accessible.StaticText
                    anchors.right: parent.right
                    color: Theme.secondary
                    font.pixelSize: Theme.metaText
                    height: parent.height
                    text: root.about.version
                }
            }
        }
    }

    EdgeFade {
        anchors.bottom: parent.bottom
        beyond: page.contentHeight - page.contentY - page.height
        height: Theme.fadeLength / 2
        width: root.width
    }
}
