#include "linux/calendar/folder/IcsFolder.h"

#include "files/PrivateFiles.h"
#include "linux/calendar/EventIdentifier.h"
#include "linux/calendar/folder/EventDetails.h"
#include "linux/calendar/folder/IcalPointers.h"
#include "linux/calendar/folder/IcsCalendar.h"

#include <QDir>
#include <QDirIterator>
#include <QFile>
#include <QFileInfo>
#include <QLoggingCategory>
#include <QUuid>

#include <cerrno>
#include <sys/stat.h>

using namespace Qt::StringLiterals;

namespace nimbarrow {

namespace {

Q_LOGGING_CATEGORY(ics, "ua.tessak.Nimbarrow.calendar.ics")

constexpr qint64 largestFile = 16 * 1024 * 1024;
constexpr qint64 largestSum = 128 * 1024 * 1024;
constexpr int mostFiles = 20'000;
constexpr qsizetype largestNote = 4096;

bool makeFolder(const QString& path)
{
    // What people plan is nobody else's business.
    return QDir().mkpath(QFileInfo(path).path())
        && (::mkdir(QFile::encodeName(path).constData(), S_IRWXU) == 0 || QFileInfo(path).isDir());
}

/// A small file; empty where there is none.
QByteArray note(const QString& path)
{
    return privatefiles::read(path, largestNote).value_or(QByteArray());
}

/// The colour where the calendar has none: always the same for the same name, and far from the next one's.
QColor usualColor(const QString& name)
{
    quint32 sum = 5381;
    for (const auto character : name)
        sum = sum * 33 + character.unicode();
    constexpr int hues = 12;
    return QColor::fromHsl(int(sum % hues) * 360 / hues, 170, 150);
}

} // namespace

/// What all files together may still be.
struct IcsFolder::Bounds {
    qint64 bytes = largestSum;
    int files = mostFiles;
};

IcsFolder::IcsFolder(QString path)
    : m_path(std::move(path))
{
}

IcsFileCache::File IcsFolder::read(
    const QFileInfo& info, const IcsFile::Reading& reading, IcsZones& zones, Bounds& bounds)
{
    if (--bounds.files < 0)
        return {};
    if (auto known = m_files.find(info))
        return known;
    if (info.size() > largestFile || info.size() > bounds.bytes) {
        qCWarning(ics, "A calendar file is too large and was left out (%lld bytes)", info.size());
        return {};
    }
    QFile file(info.filePath());
    if (!file.open(QIODevice::ReadOnly))
        return {};
    // It may have grown since.
    const auto text = file.read(largestFile);
    bounds.bytes -= text.size();
    const auto parsed
        = std::make_shared<const IcsFile>(IcsFile::parse(text, info.filePath(), reading, zones));
    m_files.keep(info, parsed);
    return parsed;
}

std::optional<QList<CalendarEvent>> IcsFolder::events(const QDateTime& start, const QDateTime& end)
{
    const QFileInfo folder(m_path);
    if (!folder.exists())
        return QList<CalendarEvent>();
    if (!folder.isDir() || !folder.isReadable() || !folder.isExecutable())
        return {};
    IcsFile::Reading reading { start, end, {} };
    for (const auto& line : note(m_path + "/addresses"_L1).split('\n')) {
        if (const auto address = mailAddress(QString::fromUtf8(line)); !address.isEmpty())
            reading.ownAddresses += address;
    }
    m_files.begin(reading);
    QList<CalendarEvent> all;
    IcsZones zones;
    Bounds bounds;
    const auto calendars
        = QDir(m_path).entryInfoList(QDir::Files | QDir::Dirs | QDir::NoDotAndDotDot, QDir::Name);
    for (const auto& entry : calendars) {
        IcsCalendar calendar(start, end);
        const auto add = [&](const QFileInfo& info) {
            if (auto file = read(info, reading, zones, bounds))
                calendar.add(std::move(file));
        };
        std::optional<QColor> color;
        QString name;
        if (entry.isDir()) {
            color = IcsFile::parseColor(note(entry.filePath() + "/color"_L1));
            name = QString::fromUtf8(note(entry.filePath() + "/displayname"_L1)).trimmed();
            QDirIterator inside(entry.filePath(), { u"*.ics"_s }, QDir::Files);
            while (inside.hasNext() && bounds.files > 0) {
                inside.next();
                add(inside.fileInfo());
            }
        } else if (entry.isFile() && entry.suffix().compare("ics"_L1, Qt::CaseInsensitive) == 0) {
            add(entry);
        } else {
            continue;
        }
        if (!color)
            color = calendar.color();
        if (name.isEmpty())
            name = calendar.name();
        auto events = calendar.events();
        for (auto& event : events) {
            event.color = color ? *color : usualColor(entry.fileName());
            event.calendar = !name.isEmpty() ? name : entry.isDir() ? entry.fileName() : entry.baseName();
        }
        all += events;
    }
    m_files.end();
    return all;
}

QString IcsFolder::folderForNewEvents() const
{
    for (const auto& entry :
        QDir(m_path).entryInfoList(QDir::Dirs | QDir::NoDotAndDotDot, QDir::Name | QDir::IgnoreCase)) {
        if (entry.isWritable())
            return entry.filePath();
    }
    const auto own = m_path + "/Personal"_L1;
    return makeFolder(own) && QFileInfo(own).isWritable() ? own : QString();
}

Calendars::Created IcsFolder::create(const QString& title, const QDateTime& start, const QDateTime& end) const
{
    using Error = Calendars::CreateError;
    const auto folder = makeFolder(m_path) ? folderForNewEvents() : QString();
    if (folder.isEmpty())
        return { Error::NoDefaultCalendar, {}, {} };

    const auto uid = QUuid::createUuid().toString(QUuid::WithoutBraces);
    const auto utc = [](const QDateTime& moment) {
        return icaltime_from_timet_with_zone(moment.toSecsSinceEpoch(), 0, icaltimezone_get_utc_timezone());
    };
    auto* const event = icalcomponent_new(ICAL_VEVENT_COMPONENT);
    icalcomponent_set_uid(event, uid.toUtf8().constData());
    icalcomponent_set_dtstamp(event, utc(QDateTime::currentDateTimeUtc()));
    icalcomponent_set_summary(event, title.toUtf8().constData());
    // A moment needs no description of a zone beside it.
    icalcomponent_set_dtstart(event, utc(start));
    icalcomponent_set_dtend(event, utc(end));
    const IcalComponent calendar(icalcomponent_new(ICAL_VCALENDAR_COMPONENT));
    icalcomponent_add_property(calendar.get(), icalproperty_new_version("2.0"));
    icalcomponent_add_property(calendar.get(), icalproperty_new_prodid("-//Nimbarrow//Nimbarrow//EN"));
    icalcomponent_add_component(calendar.get(), event);
    auto* const buffer = icalcomponent_as_ical_string_r(calendar.get());
    const QByteArray text(buffer);
    icalmemory_free_buffer(buffer);

    const auto path = folder + u'/' + uid + ".ics"_L1;
    if (!privatefiles::write(path, text))
        return { Error::Failed, qt_error_string(errno), {} };
    return { {}, {}, EventIdentifier { EventIdentifier::Kind::File, path, uid, {} }.text() };
}

} // namespace nimbarrow
