#pragma once

#include "platform/SystemWords.h"
#include "preferences/Language.h"

#include <QObject>
#include <QStringList>
#include <qqmlintegration.h>

class QJSEngine;
class QQmlEngine;

namespace nimbarrow {

/// Every text of the interface in Ukrainian and English, and which of the two is shown now. There is one
/// interface, so there is one current language in the process.
class L10n final : public QObject {
    Q_OBJECT
    QML_ELEMENT
    QML_SINGLETON
    /// The texts of the current language by key: `L10n.texts[L10n.Clear]` follows a change of language.
    Q_PROPERTY(QStringList texts READ texts NOTIFY currentChanged FINAL)

public:
    enum Resolved { Ukrainian, English };
    Q_ENUM(Resolved)

    enum class Key {
        Copied,
        Pin,
        Unpin,
        Copy,
        Delete,
        Share,
        Settings,
        LaunchAtLogin,
        LaunchAtLoginFailed,
        PeekOnClipboard,
        PeekOnTrackChange,
        WatchScreenshots,
        PasteOnClick,
        HotKey,
        AccessibilityHint,
        SettingsNotSaved,
        PressPaste,
        NothingOpensIt,
        OutsideApplicationsHint,
        Language,
        LanguageSystem,
        LanguageUkrainian,
        LanguageEnglish,
        HistoryItems,
        ClearHistory,
        Quit,
        Donate,
        HoursSuffix,
        AllowSleep,
        KeepAwake,
        Clipboard,
        Clear,
        ClipboardEmpty,
        DropHere,
        NothingPlaying,
        MusicPermissionHint,
        Previous,
        PlayPause,
        Next,
        Volume,
        Player,
        Shelf,
        SleepAllowedAgain,
        KindText,
        KindLink,
        KindScreenshot,
        KindImage,
        KindFile,
        KindFiles,
        TodaysCalendar,
        ShowTodaysCalendar,
        CalendarNoAccess,
        OpenSystemSettings,
        NothingToday,
        Join,
        NewEvent,
        UntitledEvent,
        ShareEmail,
        ShareOpenWith,
        ShareShowInFolder,
        ShareOpen,
        ShareNothing,
        HistoryNotSaved,
        OldHistoryKept,
        CopiesNotReadable,
        NoNotchTitle,
        NoNotchText,
        NoNotchShow,
        NoNotchRefuse,
    };
    Q_ENUM(Key)

    static L10n& instance();
    static L10n* create(QQmlEngine* engine, QJSEngine* script);

    [[nodiscard]] static Resolved current() { return instance().m_current; }
    static void setCurrent(Resolved current);

    /// What keys and places are called from now on; until then as on macOS.
    static void setSystemWords(const SystemWords& systemWords);

    /// `preferredLanguages` are the desktop's, the most wanted first.
    [[nodiscard]] static Resolved resolve(Language language, const QStringList& preferredLanguages);

    [[nodiscard]] static QString text(Key key);

    /// "1 file", "3 files", with the plural forms of the current language.
    [[nodiscard]] static QString files(qsizetype count);
    /// "Open" and a name.
    Q_INVOKABLE [[nodiscard]] static QString open(const QString& name);

    [[nodiscard]] QStringList texts() const;

Q_SIGNALS:
    void currentChanged();

private:
    L10n() = default;

    Resolved m_current = English;
};

} // namespace nimbarrow
