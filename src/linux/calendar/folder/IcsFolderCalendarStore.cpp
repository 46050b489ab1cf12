#include "linux/calendar/folder/IcsFolderCalendarStore.h"

using namespace Qt::StringLiterals;

namespace nimbarrow {

namespace {

// A program that synchronises writes one file after the other.
constexpr std::chrono::milliseconds rest { 200 };

} // namespace

IcsFolderCalendarStore::IcsFolderCalendarStore(const QString& folder)
    : m_folder(folder)
    , m_watch(folder, rest)
    , m_writing(u"calendar-files"_s, 1)
{
    connect(&m_watch, &FolderTreeWatch::changed, this, &Calendars::changed);
}

std::optional<QList<CalendarEvent>> IcsFolderCalendarStore::events(
    const QDateTime& start, const QDateTime& end)
{
    const std::lock_guard lock(m_reading);
    return m_folder.events(start, end);
}

void IcsFolderCalendarStore::create(const QString& title, const QDateTime& start, const QDateTime& end,
    std::function<void(const Created&)> done)
{
    auto created = std::make_shared<Created>();
    m_writing.run([this, created, title, start, end] { *created = m_folder.create(title, start, end); }, this,
        [created, done = std::move(done)] { done(*created); });
}

} // namespace nimbarrow
