import QtQuick
import Nimbarrow.Preferences
import Nimbarrow.Style

/// What can be switched on and off.
Column {
    id: root

    required property Settings settings

    ToggleSwitch {
        checked: root.settings.launchAtLogin
        label: L10n.texts[L10n.LaunchAtLogin]
        width: root.width

        onToggled: checked => {
            root.settings.setLaunchAtLogin(checked);
            root.settings.applyLaunchAtLogin();
        }
    }

    ToggleSwitch {
        checked: root.settings.peekOnClipboard
        label: L10n.texts[L10n.PeekOnClipboard]
        width: root.width

        onToggled: checked => root.settings.setPeekOnClipboard(checked)
    }

    ToggleSwitch {
        checked: root.settings.peekOnTrackChange
        label: L10n.texts[L10n.PeekOnTrackChange]
        width: root.width

        onToggled: checked => root.settings.setPeekOnTrackChange(checked)
    }

    ToggleSwitch {
        checked: root.settings.watchScreenshots
        label: L10n.texts[L10n.WatchScreenshots]
        width: root.width

        onToggled: checked => root.settings.setWatchScreenshots(checked)
    }

    ToggleSwitch {
        checked: root.settings.pasteOnClick
        label: L10n.texts[L10n.PasteOnClick]
        width: root.width

        onToggled: checked => {
            root.settings.setPasteOnClick(checked);
            root.settings.applyPasteOnClick();
        }
    }

    ToggleSwitch {
        checked: root.settings.hotKeyEnabled
        label: L10n.texts[L10n.HotKey]
        width: root.width

        onToggled: checked => root.settings.setHotKeyEnabled(checked)
    }

    ToggleSwitch {
        checked: root.settings.showCalendar
        label: L10n.texts[L10n.TodaysCalendar]
        width: root.width

        onToggled: checked => root.settings.setShowCalendar(checked)
    }
}
