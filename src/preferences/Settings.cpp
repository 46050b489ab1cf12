#include "preferences/Settings.h"

#include "platform/AccessibilityTrust.h"
#include "platform/DesktopPreferences.h"
#include "platform/LoginItem.h"
#include "platform/UserDefaults.h"
#include "preferences/L10n.h"

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace nimbarrow {

namespace {

namespace key {
constexpr QStringView peekOnClipboard = u"peekOnClipboard";
constexpr QStringView peekOnTrackChange = u"peekOnTrackChange";
constexpr QStringView watchScreenshots = u"watchScreenshots";
constexpr QStringView historyLimit = u"historyLimit";
constexpr QStringView pasteOnClick = u"pasteOnClick";
constexpr QStringView hotKeyEnabled = u"hotKeyEnabled";
constexpr QStringView showCalendar = u"showCalendar";
constexpr QStringView fetchArtwork = u"fetchArtwork";
constexpr QStringView language = u"language";
} // namespace key

// The system announces a change of trust a moment before it answers with it.
constexpr auto trustDelay = 500ms;

} // namespace

Settings::Settings(UserDefaults& defaults, LoginItem& loginItem, AccessibilityTrust& trust,
    const DesktopPreferences& desktop, Scheduler& scheduler, QObject* parent)
    : QObject(parent)
    , m_defaults(defaults)
    , m_loginItem(loginItem)
    , m_trust(trust)
    , m_desktop(desktop)
    , m_accessibilityGranted(trust.isTrusted())
    , m_runsOutsideApplications(loginItem.runsOutsideApplications())
{
    m_defaults.registerDefaults({
        { key::peekOnClipboard.toString(), true },
        { key::peekOnTrackChange.toString(), true },
        { key::watchScreenshots.toString(), true },
        { key::historyLimit.toString(), qint64 { 100 } },
        { key::pasteOnClick.toString(), false },
        { key::hotKeyEnabled.toString(), true },
        { key::showCalendar.toString(), true },
        { key::fetchArtwork.toString(), true },
        { key::language.toString(), rawValue(Language::System) },
    });
    m_peekOnClipboard = m_defaults.boolean(key::peekOnClipboard);
    m_peekOnTrackChange = m_defaults.boolean(key::peekOnTrackChange);
    m_watchScreenshots = m_defaults.boolean(key::watchScreenshots);
    m_historyLimit = m_defaults.integer(key::historyLimit);
    m_pasteOnClick = m_defaults.boolean(key::pasteOnClick);
    m_hotKeyEnabled = m_defaults.boolean(key::hotKeyEnabled);
    m_showCalendar = m_defaults.boolean(key::showCalendar);
    m_fetchArtwork = m_defaults.boolean(key::fetchArtwork);
    m_language = languageFromRawValue(m_defaults.string(key::language)).value_or(Language::System);
    applyLanguage();
    m_launchAtLogin = m_loginItem.isEnabled();

    connect(&m_defaults, &UserDefaults::isSavedChanged, this, &Settings::isSavedChanged);
    connect(&m_trust, &AccessibilityTrust::changed, this,
        [this, &scheduler] { m_trustCheck = scheduler.after(trustDelay, [this] { readTrust(); }); });
}

template <typename T>
bool Settings::assign(T& field, const T& value, void (Settings::*changed)())
{
    if (field == value)
        return false;
    field = value;
    Q_EMIT(this->*changed)();
    return true;
}

template <typename T>
void Settings::keep(T& field, const T& value, void (Settings::*changed)(), QStringView key)
{
    if (assign(field, value, changed))
        m_defaults.set(key, QVariant::fromValue(value));
}

void Settings::setPeekOnClipboard(bool on)
{
    keep(m_peekOnClipboard, on, &Settings::peekOnClipboardChanged, key::peekOnClipboard);
}

void Settings::setPeekOnTrackChange(bool on)
{
    keep(m_peekOnTrackChange, on, &Settings::peekOnTrackChangeChanged, key::peekOnTrackChange);
}

void Settings::setWatchScreenshots(bool on)
{
    keep(m_watchScreenshots, on, &Settings::watchScreenshotsChanged, key::watchScreenshots);
}

void Settings::setHistoryLimit(qint64 limit)
{
    keep(m_historyLimit, limit, &Settings::historyLimitChanged, key::historyLimit);
}

void Settings::setHotKeyEnabled(bool on)
{
    keep(m_hotKeyEnabled, on, &Settings::hotKeyEnabledChanged, key::hotKeyEnabled);
}

void Settings::setShowCalendar(bool on)
{
    keep(m_showCalendar, on, &Settings::showCalendarChanged, key::showCalendar);
}

void Settings::setLanguage(Language language)
{
    // Written even when it is the same: an unknown stored language reads as "system" until the user chooses.
    m_defaults.set(key::language, rawValue(language));
    assign(m_language, language, &Settings::languageChanged);
    applyLanguage();
}

void Settings::setPasteOnClick(bool on)
{
    assign(m_pasteOnClick, on, &Settings::pasteOnClickChanged);
}

void Settings::applyPasteOnClick()
{
    m_defaults.set(key::pasteOnClick, m_pasteOnClick);
    readTrust();
    if (m_pasteOnClick && !m_accessibilityGranted)
        m_trust.prompt();
}

void Settings::setLaunchAtLogin(bool on)
{
    assign(m_launchAtLogin, on, &Settings::launchAtLoginChanged);
}

void Settings::refreshLaunchAtLogin()
{
    setLaunchAtLogin(m_loginItem.isEnabled());
    assign(m_launchAtLoginError, {}, &Settings::launchAtLoginErrorChanged);
}

void Settings::applyLaunchAtLogin()
{
    assign(
        m_launchAtLoginError, m_loginItem.setEnabled(m_launchAtLogin), &Settings::launchAtLoginErrorChanged);
}

bool Settings::isSaved() const
{
    return m_defaults.isSaved();
}

void Settings::applyLanguage()
{
    L10n::setCurrent(L10n::resolve(m_language, m_desktop.preferredLanguages()));
}

void Settings::readTrust()
{
    assign(m_accessibilityGranted, m_trust.isTrusted(), &Settings::accessibilityGrantedChanged);
}

} // namespace nimbarrow
