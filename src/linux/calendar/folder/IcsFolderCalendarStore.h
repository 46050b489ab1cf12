#pragma once

#include "linux/calendar/FolderTreeWatch.h"
#include "linux/calendar/folder/IcsFolder.h"
#include "platform/Calendars.h"
#include "qt/ThreadedQueue.h"

#include <mutex>

namespace nimbarrow {

/// The calendars in a folder of iCalendar files. What writes there is another program that synchronises it,
/// or the user.
class IcsFolderCalendarStore final : public Calendars {
    Q_OBJECT

public:
    /// The folder may be missing; the first new event makes it.
    explicit IcsFolderCalendarStore(const QString& folder);

    /// A folder that cannot be read shows by giving no events.
    [[nodiscard]] std::optional<QList<CalendarEvent>> events(
        const QDateTime& start, const QDateTime& end) override;
    void create(const QString& title, const QDateTime& start, const QDateTime& end,
        std::function<void(const Created&)> done) override;

private:
    std::mutex m_reading;
    IcsFolder m_folder;
    FolderTreeWatch m_watch;
    /// Last, so that it has ended before what it uses goes.
    ThreadedQueue m_writing;
};

} // namespace nimbarrow
