#pragma once

#include "platform/Scheduler.h"
#include "preferences/Language.h"

#include <QObject>
#include <QString>
#include <qqmlintegration.h>

#include <optional>

namespace nimbarrow {

class AccessibilityTrust;
class DesktopPreferences;
class LoginItem;
class UserDefaults;

/// What the user chose, and the live state of the system that stands beside it in the settings.
class Settings final : public QObject {
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("Made by the application")
    Q_PROPERTY(bool peekOnClipboard READ peekOnClipboard NOTIFY peekOnClipboardChanged FINAL)
    Q_PROPERTY(bool peekOnTrackChange READ peekOnTrackChange NOTIFY peekOnTrackChangeChanged FINAL)
    Q_PROPERTY(bool watchScreenshots READ watchScreenshots NOTIFY watchScreenshotsChanged FINAL)
    Q_PROPERTY(double historyLimit READ historyLimitNumber NOTIFY historyLimitChanged FINAL)
    Q_PROPERTY(bool pasteOnClick READ pasteOnClick NOTIFY pasteOnClickChanged FINAL)
    Q_PROPERTY(bool hotKeyEnabled READ hotKeyEnabled NOTIFY hotKeyEnabledChanged FINAL)
    Q_PROPERTY(bool showCalendar READ showCalendar NOTIFY showCalendarChanged FINAL)
    Q_PROPERTY(nimbarrow::languagechoice::Language language READ language NOTIFY languageChanged FINAL)
    Q_PROPERTY(bool launchAtLogin READ launchAtLogin NOTIFY launchAtLoginChanged FINAL)
    Q_PROPERTY(QString launchAtLoginError READ launchAtLoginErrorText NOTIFY launchAtLoginErrorChanged FINAL)
    Q_PROPERTY(bool accessibilityGranted READ accessibilityGranted NOTIFY accessibilityGrantedChanged FINAL)
    Q_PROPERTY(bool isSaved READ isSaved NOTIFY isSavedChanged FINAL)
    Q_PROPERTY(bool runsOutsideApplications READ runsOutsideApplications CONSTANT FINAL)

public:
    /// The ports outlive the settings.
    Settings(UserDefaults& defaults, LoginItem& loginItem, AccessibilityTrust& trust,
        const DesktopPreferences& desktop, Scheduler& scheduler, QObject* parent = nullptr);

    [[nodiscard]] bool peekOnClipboard() const { return m_peekOnClipboard; }
    [[nodiscard]] bool peekOnTrackChange() const { return m_peekOnTrackChange; }
    [[nodiscard]] bool watchScreenshots() const { return m_watchScreenshots; }
    /// In entries, as the user set it: any number.
    [[nodiscard]] qint64 historyLimit() const { return m_historyLimit; }
    [[nodiscard]] bool pasteOnClick() const { return m_pasteOnClick; }
    [[nodiscard]] bool hotKeyEnabled() const { return m_hotKeyEnabled; }
    [[nodiscard]] bool showCalendar() const { return m_showCalendar; }
    /// Covers of what plays may come from the network. Kept in the file alone.
    [[nodiscard]] bool fetchArtwork() const { return m_fetchArtwork; }
    [[nodiscard]] Language language() const { return m_language; }
    [[nodiscard]] bool launchAtLogin() const { return m_launchAtLogin; }
    [[nodiscard]] const std::optional<QString>& launchAtLoginError() const { return m_launchAtLoginError; }
    [[nodiscard]] bool accessibilityGranted() const { return m_accessibilityGranted; }
    /// False while the disk does not take what the user chose; it is tried again by itself.
    [[nodiscard]] bool isSaved() const;
    [[nodiscard]] bool runsOutsideApplications() const { return m_runsOutsideApplications; }

    // What follows is kept at once, except where noted.
    Q_INVOKABLE void setPeekOnClipboard(bool on);
    Q_INVOKABLE void setPeekOnTrackChange(bool on);
    Q_INVOKABLE void setWatchScreenshots(bool on);
    Q_INVOKABLE void setHistoryLimit(qint64 limit);
    Q_INVOKABLE void setHotKeyEnabled(bool on);
    Q_INVOKABLE void setShowCalendar(bool on);
    Q_INVOKABLE void setLanguage(nimbarrow::languagechoice::Language language);

    /// Takes effect with `applyPasteOnClick`.
    Q_INVOKABLE void setPasteOnClick(bool on);
    /// Keeps `pasteOnClick` and asks the user for the permission that it needs.
    Q_INVOKABLE void applyPasteOnClick();

    /// Takes effect with `applyLaunchAtLogin`.
    Q_INVOKABLE void setLaunchAtLogin(bool on);
    /// Reads anew whether the program starts at login: the user may have changed that elsewhere.
    Q_INVOKABLE void refreshLaunchAtLogin();
    /// Makes the system agree with `launchAtLogin`; a failure becomes `launchAtLoginError`.
    Q_INVOKABLE void applyLaunchAtLogin();

Q_SIGNALS:
    void peekOnClipboardChanged();
    void peekOnTrackChangeChanged();
    void watchScreenshotsChanged();
    void historyLimitChanged();
    void pasteOnClickChanged();
    void hotKeyEnabledChanged();
    void showCalendarChanged();
    void languageChanged();
    void launchAtLoginChanged();
    void launchAtLoginErrorChanged();
    void accessibilityGrantedChanged();
    void isSavedChanged();

private:
    /// True when the value was another one.
    template <typename T>
    bool assign(T& field, const T& value, void (Settings::*changed)());
    template <typename T>
    void keep(T& field, const T& value, void (Settings::*changed)(), QStringView key);
    void applyLanguage();
    void readTrust();
    [[nodiscard]] double historyLimitNumber() const { return static_cast<double>(m_historyLimit); }
    [[nodiscard]] QString launchAtLoginErrorText() const { return m_launchAtLoginError.value_or(QString()); }

    UserDefaults& m_defaults;
    LoginItem& m_loginItem;
    AccessibilityTrust& m_trust;
    const DesktopPreferences& m_desktop;
    bool m_peekOnClipboard = true;
    bool m_peekOnTrackChange = true;
    bool m_watchScreenshots = true;
    qint64 m_historyLimit = 0;
    bool m_pasteOnClick = false;
    bool m_hotKeyEnabled = true;
    bool m_showCalendar = true;
    bool m_fetchArtwork = true;
    Language m_language = Language::System;
    bool m_launchAtLogin = false;
    std::optional<QString> m_launchAtLoginError;
    bool m_accessibilityGranted = false;
    bool m_runsOutsideApplications = false;
    Timer m_trustCheck;
};

} // namespace nimbarrow
