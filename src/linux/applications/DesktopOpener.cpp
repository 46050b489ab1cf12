#include "linux/applications/DesktopOpener.h"

#include "linux/applications/StartProgram.h"
#include "linux/calendar/EventIdentifier.h"
#include "linux/session/BusCalls.h"

#include <QElapsedTimer>
#include <QLoggingCategory>
#include <QProcess>
#include <QUrlQuery>

#include <array>
#include <utility>

using namespace Qt::StringLiterals;

namespace nimbarrow {

namespace {

Q_LOGGING_CATEGORY(opening, "ua.tessak.Nimbarrow.opener")

// A file manager that has to be started first needs its time.
constexpr int fileManagerPatience = 10'000; // ms
// A tool that has found nothing says so at once.
constexpr qint64 longestTool = 5'000; // ms

struct SettingsProgram {
    /// As XDG_CURRENT_DESKTOP has it; nothing where the program runs on any desktop.
    QLatin1StringView desktop;
    QLatin1StringView name;
    QLatin1StringView calendars;
    QLatin1StringView privacy;
};

constexpr std::array settingsPrograms {
    SettingsProgram { "GNOME"_L1, "gnome-control-center"_L1, "online-accounts"_L1, "privacy"_L1 },
    SettingsProgram { "Budgie"_L1, "budgie-control-center"_L1, "online-accounts"_L1, "privacy"_L1 },
    SettingsProgram { "KDE"_L1, "systemsettings"_L1, "kcm_kaccounts"_L1, {} },
    SettingsProgram { "KDE"_L1, "systemsettings5"_L1, "kcm_kaccounts"_L1, {} },
    SettingsProgram { "X-Cinnamon"_L1, "cinnamon-settings"_L1, "privacy"_L1, "privacy"_L1 },
    SettingsProgram { "XFCE"_L1, "xfce4-settings-manager"_L1, {}, {} },
    SettingsProgram { "MATE"_L1, "mate-control-center"_L1, {}, {} },
};

QUrl evolutionLink(const EventIdentifier& event)
{
    QUrl link(u"calendar:///"_s);
    QUrlQuery query;
    const auto add = [&query](const QString& key, const QString& value) {
        if (!value.isEmpty())
            query.addQueryItem(key, QString::fromLatin1(QUrl::toPercentEncoding(value)));
    };
    add(u"source-uid"_s, event.calendar);
    add(u"comp-uid"_s, event.uid);
    add(u"comp-rid"_s, event.recurrence);
    link.setQuery(query);
    return link;
}

} // namespace

DesktopOpener::DesktopOpener(InheritedState inherited, std::optional<QDBusConnection> bus)
    : m_inherited(std::move(inherited))
    , m_bus(std::move(bus))
{
}

DesktopOpener::~DesktopOpener()
{
    for (auto* const tool : std::as_const(m_tools))
        tool->disconnect(this);
    // A process object that goes takes its program along.
    static auto* const abandoned = new QList<QProcess*>;
    *abandoned += m_tools;
}

void DesktopOpener::open(const QUrl& url)
{
    // Without a scheme it could be read as an option.
    if (!url.isValid() || url.isRelative())
        return;
    if (url.scheme() == "x-apple.systempreferences"_L1) {
        if (const auto command = settingsCommand(url.query().contains("Calendar"_L1)); !command.isEmpty())
            start(command.first(), command.mid(1));
    } else if (const auto event = EventIdentifier::ofLink(url)) {
        openEvent(*event);
    } else {
        openByDefault(url);
    }
}

void DesktopOpener::openByDefault(const QUrl& url)
{
    const auto link = url.toString(QUrl::FullyEncoded);
    QList<QStringList> commands;
    if (const auto tool = program(u"xdg-open"_s); !tool.isEmpty())
        commands << QStringList { tool, link };
    // It finds out by itself what kind of file it has. The other one leaves that to the desktop, and where
    // there is no desktop to programs that may be missing.
    if (const auto tool = program(u"gio"_s); !tool.isEmpty()) {
        const bool isBare = m_inherited.environment.value(u"XDG_CURRENT_DESKTOP"_s).isEmpty();
        commands.insert(isBare ? 0 : commands.size(), QStringList { tool, u"open"_s, link });
    }
    openByFirst(commands, url);
}

void DesktopOpener::openByFirst(QList<QStringList> commands, const QUrl& url)
{
    if (commands.isEmpty()) {
        qCWarning(opening, "No program opens what was to be opened");
        Q_EMIT failed(url);
        return;
    }
    auto command = commands.takeFirst();
    const auto path = command.takeFirst();
    auto* const tool = new QProcess;
    prepareProgram(*tool, m_inherited, path, command);
    const auto over = [this, tool, commands, url](bool isDone) {
        m_tools.removeOne(tool);
        tool->deleteLater();
        if (!isDone)
            openByFirst(commands, url);
    };
    QElapsedTimer began;
    began.start();
    connect(tool, &QProcess::finished, this, [over, began](int code, QProcess::ExitStatus status) {
        // The tool may have become the program that it opened, which ends as it likes.
        over((code == 0 && status == QProcess::NormalExit) || began.hasExpired(longestTool));
    });
    connect(tool, &QProcess::errorOccurred, this, [over](QProcess::ProcessError error) {
        if (error == QProcess::FailedToStart)
            over(false);
    });
    m_tools << tool;
    tool->start();
}

void DesktopOpener::openEvent(const EventIdentifier& event)
{
    if (event.kind == EventIdentifier::Kind::File) {
        // A link may come from anywhere; it opens nothing but calendars.
        if (event.calendar.endsWith(".ics"_L1, Qt::CaseInsensitive))
            openByDefault(QUrl::fromLocalFile(event.calendar));
        return;
    }
    for (const auto& name : { u"gnome-calendar"_s, u"org.gnome.Calendar"_s }) {
        if (const auto calendar = program(name); !calendar.isEmpty()) {
            QStringList parts { event.calendar, event.uid };
            if (!event.recurrence.isEmpty())
                parts += event.recurrence;
            start(calendar, { u"--uuid"_s, parts.join(u':') });
            return;
        }
    }
    for (const auto& name : { u"evolution"_s, u"org.gnome.Evolution"_s }) {
        if (const auto calendar = program(name); !calendar.isEmpty()) {
            start(calendar, { evolutionLink(event).toString(QUrl::FullyEncoded) });
            return;
        }
    }
    qCWarning(opening, "There is no program to show a calendar event with");
    Q_EMIT failed({});
}

QStringList DesktopOpener::settingsCommand(bool aboutCalendars) const
{
    const auto desktops = m_inherited.environment.value(u"XDG_CURRENT_DESKTOP"_s).split(u':');
    // Most of these refuse to run on another desktop than theirs.
    for (const auto& settings : settingsPrograms) {
        if (!desktops.contains(settings.desktop))
            continue;
        if (const auto path = program(settings.name); !path.isEmpty()) {
            const auto page = aboutCalendars ? settings.calendars : settings.privacy;
            return page.isEmpty() ? QStringList { path } : QStringList { path, page };
        }
    }
    return {};
}

void DesktopOpener::reveal(const QList<QUrl>& files)
{
    QStringList links;
    QUrl folder;
    for (const auto& file : files) {
        if (!file.isLocalFile())
            continue;
        links << file.toString(QUrl::FullyEncoded);
        if (folder.isEmpty())
            folder = file.adjusted(QUrl::StripTrailingSlash)
                         .adjusted(QUrl::RemoveFilename | QUrl::StripTrailingSlash);
    }
    if (links.isEmpty())
        return;
    if (!m_bus)
        return openByDefault(folder);
    auto question = QDBusMessage::createMethodCall(u"org.freedesktop.FileManager1"_s,
        u"/org/freedesktop/FileManager1"_s, u"org.freedesktop.FileManager1"_s, u"ShowItems"_s);
    question << links << QString();
    const auto answered = [this, folder](const QDBusMessage& answer) {
        if (answer.type() == QDBusMessage::ErrorMessage)
            openByDefault(folder);
    };
    callBus(*m_bus, question, this, answered, fileManagerPatience);
}

QString DesktopOpener::program(const QString& name) const
{
    return installedProgram(m_inherited, name);
}

void DesktopOpener::start(const QString& path, const QStringList& arguments) const
{
    if (!startProgram(m_inherited, path, arguments))
        qCWarning(opening, "%ls could not be started", qUtf16Printable(path));
}

} // namespace nimbarrow
