#include "preferences/L10n.h"

#include <QJSEngine>

#include <array>

using namespace Qt::StringLiterals;

namespace nimbarrow {

namespace {

struct Text {
    L10n::Key key;
    QStringView english;
    QStringView ukrainian;
};

// In the order of the keys. What stands in braces is said in the system's own words.
constexpr std::array table {
    Text { L10n::Key::Copied, u"Copied", u"Скопійовано" },
    Text { L10n::Key::Pin, u"Pin", u"Закріпити" },
    Text { L10n::Key::Unpin, u"Unpin", u"Відкріпити" },
    Text { L10n::Key::Copy, u"Copy", u"Копіювати" },
    Text { L10n::Key::Delete, u"Delete", u"Видалити" },
    Text { L10n::Key::Share, u"Share", u"Поділитися" },
    Text { L10n::Key::Settings, u"Settings", u"Налаштування" },
    Text { L10n::Key::LaunchAtLogin, u"Launch at login", u"Запускати при вході" },
    Text { L10n::Key::LaunchAtLoginFailed, u"Launch at login could not be changed: %1",
        u"Не вдалося змінити запуск при вході: %1" },
    Text { L10n::Key::PeekOnClipboard, u"Show new clipboard items", u"Показувати нове з буфера" },
    Text { L10n::Key::PeekOnTrackChange, u"Show track changes", u"Показувати зміну треку" },
    Text { L10n::Key::WatchScreenshots, u"Watch for screenshots", u"Стежити за скріншотами" },
    Text { L10n::Key::PasteOnClick, u"Paste on click", u"Вставляти кліком" },
    Text { L10n::Key::HotKey, u"{hotKey} hot key", u"Хоткей {hotKey}" },
    Text { L10n::Key::AccessibilityHint, u"Needs permission: {settings} → Privacy → Accessibility",
        u"Потрібен дозвіл: {settings} → Конфіденційність → Універсальний доступ" },
    Text { L10n::Key::SettingsNotSaved, u"These settings could not be saved. Is the disk full?",
        u"Не вдалося зберегти ці налаштування. Чи є місце на диску?" },
    Text { L10n::Key::PressPaste, u"Press {paste}", u"Натисни {paste}" },
    Text { L10n::Key::NothingOpensIt, u"No program opens this", u"Немає чим відкрити" },
    Text { L10n::Key::OutsideApplicationsHint, u"Not running from {programs}: login will open this copy",
        u"Запущено не з {programs}: при вході відкриється саме ця копія" },
    Text { L10n::Key::Language, u"Language", u"Мова" },
    Text { L10n::Key::LanguageSystem, u"System", u"Як у системі" },
    Text { L10n::Key::LanguageUkrainian, u"Українська", u"Українська" },
    Text { L10n::Key::LanguageEnglish, u"English", u"English" },
    Text { L10n::Key::HistoryItems, u"History, items", u"Історія, елементів" },
    Text { L10n::Key::ClearHistory, u"Clear history", u"Очистити історію" },
    Text { L10n::Key::Quit, u"Quit", u"Вийти" },
    Text { L10n::Key::Donate, u"☕ Buy me a coffee", u"☕ Підтримати" },
    Text { L10n::Key::HoursSuffix, u"h", u"год" },
    Text { L10n::Key::AllowSleep, u"Allow sleep", u"Дозволити сон" },
    Text { L10n::Key::KeepAwake, u"Keep the {computer} awake", u"Не давати ноуту спати" },
    Text { L10n::Key::Clipboard, u"Clipboard", u"Буфер" },
    Text { L10n::Key::Clear, u"Clear", u"Очистити" },
    Text {
        L10n::Key::ClipboardEmpty, u"Copy something or take a screenshot", u"Скопіюй щось або зроби скрін" },
    Text { L10n::Key::DropHere, u"Drop here", u"Кинь сюди" },
    Text { L10n::Key::NothingPlaying, u"Nothing playing", u"Нічого не грає" },
    Text { L10n::Key::MusicPermissionHint,
        u"Allow Nimbarrow to control Music: {settings} → Privacy → Automation",
        u"Дозволь Nimbarrow керувати Music: {settings} → Конфіденційність → Автоматизація" },
    Text { L10n::Key::Previous, u"Previous", u"Попередній" },
    Text { L10n::Key::PlayPause, u"Play / pause", u"Відтворити / пауза" },
    Text { L10n::Key::Next, u"Next", u"Наступний" },
    Text { L10n::Key::Volume, u"Volume", u"Гучність" },
    Text { L10n::Key::Player, u"Player", u"Плеєр" },
    Text { L10n::Key::Shelf, u"Shelf", u"Полиця" },
    Text { L10n::Key::SleepAllowedAgain, u"Sleep allowed again", u"Сон знову дозволено" },
    Text { L10n::Key::KindText, u"Text", u"Текст" },
    Text { L10n::Key::KindLink, u"Link", u"Посилання" },
    Text { L10n::Key::KindScreenshot, u"Screenshot", u"Скріншот" },
    Text { L10n::Key::KindImage, u"Image", u"Зображення" },
    Text { L10n::Key::KindFile, u"File", u"Файл" },
    Text { L10n::Key::KindFiles, u"Files", u"Файли" },
    Text { L10n::Key::TodaysCalendar, u"Today's calendar", u"Календар на сьогодні" },
    Text { L10n::Key::ShowTodaysCalendar, u"Show today's calendar", u"Показати календар на сьогодні" },
    Text { L10n::Key::CalendarNoAccess, u"No access to Calendar", u"Немає доступу до Календаря" },
    Text { L10n::Key::OpenSystemSettings, u"Open {settings}", u"Відкрити {settings}" },
    Text { L10n::Key::NothingToday, u"Nothing today", u"Сьогодні нічого немає" },
    Text { L10n::Key::Join, u"Join", u"Приєднатися" },
    Text { L10n::Key::NewEvent, u"New Event", u"Нова подія" },
    Text { L10n::Key::UntitledEvent, u"Untitled event", u"Подія без назви" },
    Text { L10n::Key::ShareEmail, u"Email", u"Надіслати поштою" },
    Text { L10n::Key::ShareOpenWith, u"Open with…", u"Відкрити за допомогою…" },
    Text { L10n::Key::ShareShowInFolder, u"Show in folder", u"Показати в теці" },
    Text { L10n::Key::ShareOpen, u"Open", u"Відкрити" },
    Text { L10n::Key::ShareNothing, u"No app to share with", u"Немає кому передати" },
    Text { L10n::Key::HistoryNotSaved, u"History cannot be saved", u"Історію не вдається зберегти" },
    Text { L10n::Key::OldHistoryKept, u"Old history unreadable, kept aside",
        u"Стара історія не читається, її відкладено" },
    Text { L10n::Key::CopiesNotReadable, u"Not allowed to read what is copied",
        u"Читати скопійоване не дозволено" },
    Text { L10n::Key::NoNotchTitle, u"Show the panel at the top of this screen?",
        u"Показувати панель угорі цього екрана?" },
    Text { L10n::Key::NoNotchText,
        u"No screen here has a camera notch. Nimbarrow can stand at the top of the screen %1 instead: "
        u"point there and it opens.",
        u"Жоден екран тут не має вирізу для камери. Nimbarrow може бути вгорі екрана %1: "
        u"наведи туди вказівник, і панель відкриється." },
    Text { L10n::Key::NoNotchShow, u"Show", u"Показувати" },
    Text { L10n::Key::NoNotchRefuse, u"Do not show", u"Не показувати" },
};

constexpr bool isInKeyOrder()
{
    std::size_t index = 0;
    for (const auto& text : table) {
        if (static_cast<std::size_t>(text.key) != index++)
            return false;
    }
    return true;
}
static_assert(isInKeyOrder());
static_assert(table.size() == static_cast<std::size_t>(L10n::Key::NoNotchRefuse) + 1);

SystemWords& words()
{
    static SystemWords words { u"⌘⇧V"_s, u"Command-V"_s, u"/Applications"_s, u"System Settings"_s,
        u"Системні параметри"_s };
    return words;
}

QStringView ukrainianFiles(qsizetype count)
{
    const auto ones = count % 10;
    const auto tens = count % 100;
    if (ones == 1 && tens != 11)
        return u"файл";
    if (ones >= 2 && ones <= 4 && (tens < 12 || tens > 14))
        return u"файли";
    return u"файлів";
}

} // namespace

L10n& L10n::instance()
{
    static L10n l10n;
    return l10n;
}

L10n* L10n::create(QQmlEngine* /*engine*/, QJSEngine* /*script*/)
{
    QJSEngine::setObjectOwnership(&instance(), QJSEngine::CppOwnership);
    return &instance();
}

void L10n::setCurrent(Resolved current)
{
    if (instance().m_current == current)
        return;
    instance().m_current = current;
    Q_EMIT instance().currentChanged();
}

void L10n::setSystemWords(const SystemWords& systemWords)
{
    words() = systemWords;
    Q_EMIT instance().currentChanged();
}

L10n::Resolved L10n::resolve(Language language, const QStringList& preferredLanguages)
{
    switch (language) {
    case Language::Uk: return Ukrainian;
    case Language::En: return English;
    case Language::System: break;
    }
    return preferredLanguages.value(0).toLower().startsWith("uk"_L1) ? Ukrainian : English;
}

QString L10n::text(Key key)
{
    const auto& text = table.at(static_cast<std::size_t>(key));
    const auto isUkrainian = current() == Ukrainian;
    return (isUkrainian ? text.ukrainian : text.english)
        .toString()
        .replace("{hotKey}"_L1, words().hotKey)
        .replace("{paste}"_L1, words().paste)
        .replace("{computer}"_L1, words().computer)
        .replace("{programs}"_L1, words().programsFolder)
        .replace("{settings}"_L1, isUkrainian ? words().settingsUkrainian : words().settingsEnglish);
}

QString L10n::files(qsizetype count)
{
    const auto number = QString::number(count);
    if (current() == Ukrainian)
        return number + u' ' + ukrainianFiles(count).toString();
    return number + (count == 1 ? " file"_L1 : " files"_L1);
}

QString L10n::open(const QString& name)
{
    return (current() == Ukrainian ? u"Відкрити "_s : u"Open "_s) + name;
}

QStringList L10n::texts() const
{
    QStringList texts;
    texts.reserve(static_cast<qsizetype>(table.size()));
    for (const auto& entry : table)
        texts << text(entry.key);
    return texts;
}

} // namespace nimbarrow
