#pragma once

#include "linux/calendar/folder/FolderTreeWatch.h"
#include "linux/calendar/folder/IcsFolder.h"
#include "platform/CalendarStore.h"
#include "qt/ThreadedQueue.h"

#include <atomic>

namespace nimbarrow {

/// The calendars in a folder of iCalendar files, for a desktop that keeps none itself.
class IcsFolderCalendarStore final : public CalendarStore {
    Q_OBJECT

public:
    /// Makes the folder, in the background. What can write there is another program that synchronises it.
    explicit IcsFolderCalendarStore(const QString& folder);

    [[nodiscard]] Authorization authorization() override;
    void requestFullAccess(std::function<void(bool granted)> answered) override;
    [[nodiscard]] std::optional<QList<CalendarEvent>> events(
        const QDateTime& start, const QDateTime& end) override;
    void create(const QString& title, const QDateTime& start, const QDateTime& end,
        std::function<void(const Created&)> done) override;

private:
    /// Whether the folder can be read, found out in the background; `changed` is told when that is another.
    void findOut();
    /// On any thread.
    void setRefused(bool refused);

    const IcsFolder m_folder;
    std::atomic<bool> m_isRefused = false;
    std::unique_ptr<FolderTreeWatch> m_watch;
    /// Last, so that it has ended before what it uses goes.
    ThreadedQueue m_writing;
};

} // namespace nimbarrow
