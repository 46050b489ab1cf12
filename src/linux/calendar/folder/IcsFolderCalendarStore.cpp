#include "linux/calendar/folder/IcsFolderCalendarStore.h"

#include <QCoreApplication>

using namespace Qt::StringLiterals;

namespace nimbarrow {

namespace {

// A program that synchronises writes one file after the other.
constexpr std::chrono::milliseconds rest { 200 };

} // namespace

IcsFolderCalendarStore::IcsFolderCalendarStore(const QString& folder)
    : m_folder(folder)
    , m_writing(u"calendar-files"_s, 1)
{
    m_writing.run([this] { m_isRefused = !m_folder.prepare(); }, this,
        [this] {
            m_watch = std::make_unique<FolderTreeWatch>(m_folder.path(), rest);
            connect(m_watch.get(), &FolderTreeWatch::changed, this, &CalendarStore::changed);
            // What came before the watch stood.
            Q_EMIT changed();
        });
}

CalendarStore::Authorization IcsFolderCalendarStore::authorization()
{
    if (m_isRefused)
        findOut();
    return m_isRefused ? Authorization::Denied : Authorization::FullAccess;
}

void IcsFolderCalendarStore::findOut()
{
    m_writing.run([this] { setRefused(!m_folder.prepare()); }, this, [] {});
}

void IcsFolderCalendarStore::setRefused(bool refused)
{
    if (m_isRefused.exchange(refused) != refused)
        QMetaObject::invokeMethod(this, &CalendarStore::changed, Qt::QueuedConnection);
}

void IcsFolderCalendarStore::requestFullAccess(std::function<void(bool)> answered)
{
    auto granted = std::make_shared<bool>();
    m_writing.run(
        [this, granted] {
            *granted = m_folder.prepare();
            setRefused(!*granted);
        },
        QCoreApplication::instance(), [granted, answered = std::move(answered)] { answered(*granted); });
}

std::optional<QList<CalendarEvent>> IcsFolderCalendarStore::events(
    const QDateTime& start, const QDateTime& end)
{
    auto events = m_folder.events(start, end);
    setRefused(!events);
    return events;
}

void IcsFolderCalendarStore::create(const QString& title, const QDateTime& start, const QDateTime& end,
    std::function<void(const Created&)> done)
{
    auto created = std::make_shared<Created>();
    m_writing.run([this, created, title, start, end] { *created = m_folder.create(title, start, end); }, this,
        [created, done = std::move(done)] { done(*created); });
}

} // namespace nimbarrow
