#pragma once

#include "linux/calendar/CalendarSource.h"
#include "platform/CalendarStore.h"

#include <QDBusConnection>
#include <QDBusServiceWatcher>

#include <condition_variable>
#include <functional>
#include <memory>
#include <mutex>
#include <optional>
#include <vector>

namespace nimbarrow {

class DayWatch;
class FolderTreeWatch;
class UserDefaults;

/// The calendars of this session: those of the desktop's data server, where one is installed, and those in a
/// folder of files, together. Neither is touched before the user has asked for the calendar once, and what
/// reads a folder is not loaded before there is something in it.
class LinuxCalendarStore final : public CalendarStore {
    Q_OBJECT

public:
    /// How to make the two stores; called on the main thread, at most once unless it gives null.
    struct Stores {
        std::function<std::unique_ptr<Calendars>()> server;
        std::function<std::unique_ptr<Calendars>()> folder;
        /// Where the files are, if there are any.
        QString folderPath;
    };

    /// Whether the user has asked is kept in `defaults`. `session` is the bus the data server is on.
    LinuxCalendarStore(UserDefaults& defaults, std::optional<QDBusConnection> session, Stores stores,
        std::unique_ptr<DayWatch> dayWatch);
    ~LinuxCalendarStore() override;

    /// Denied only where one of the two is refused and the other has nothing to show.
    [[nodiscard]] Authorization authorization() override;
    void requestFullAccess(std::function<void(bool granted)> answered) override;
    /// One that is slow does not hold the other up for more than a second: it counts as it was then, and what
    /// it answers later is a change.
    [[nodiscard]] std::optional<QList<CalendarEvent>> events(
        const QDateTime& start, const QDateTime& end) override;
    /// At the server where it has a calendar for new events, else in the folder, which is made where it is
    /// missing.
    void create(const QString& title, const QDateTime& start, const QDateTime& end,
        std::function<void(const Created&)> done) override;

private:
    using Lock = std::unique_lock<std::mutex>;

    [[nodiscard]] bool is(CalendarSource::State state) const;
    /// Finds out what there is, unless that is known or under way; anew after a refusal. On the main thread.
    void findOut();
    void findServer();
    void askServer();
    void useServer();
    void findFolder();
    void lookIntoFolder();
    /// False when what reads it cannot be loaded.
    bool useFolder();
    void setState(CalendarSource& source, CalendarSource::State state);
    void answerRequests();
    void createWaiting();
    void createInFolder(const QString& title, const QDateTime& start, const QDateTime& end,
        const std::function<void(const Created&)>& done);
    /// Has the sources asked what was asked last.
    void ask();
    void ask(CalendarSource& source);
    void close();

    UserDefaults& m_defaults;
    const std::optional<QDBusConnection> m_session;
    const Stores m_stores;
    const std::unique_ptr<DayWatch> m_dayWatch;
    std::unique_ptr<QDBusServiceWatcher> m_serverWatch;
    /// Until there is something in the folder.
    std::unique_ptr<FolderTreeWatch> m_folderWatch;
    bool m_isFindingServer = false;
    bool m_isFindingFolder = false;
    std::vector<std::function<void(bool)>> m_requests;
    /// New events for whom it is not known yet whether there is a server.
    std::vector<std::function<void()>> m_waiting;

    /// Of what the threads that ask and those that wait for answers use.
    mutable std::mutex m_mutex;
    std::condition_variable m_answered;
    CalendarSource::Question m_question;
    bool m_isClosed = false;
    /// Last, so that nobody asks any more when the rest goes.
    CalendarSource m_server;
    CalendarSource m_folder;
};

} // namespace nimbarrow
