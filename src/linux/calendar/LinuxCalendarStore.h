#pragma once

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
class UserDefaults;

/// The calendars of this session: the desktop's data server where it is installed, a folder of files
/// elsewhere. Neither is touched before the user has asked for the calendar once.
class LinuxCalendarStore final : public CalendarStore {
    Q_OBJECT

public:
    /// How to make the two stores; called on the main thread, at most once. Null when that cannot be.
    struct Stores {
        std::function<std::unique_ptr<CalendarStore>()> server;
        std::function<std::unique_ptr<CalendarStore>()> folder;
    };

    /// Whether the user has asked is kept in `defaults`. `session` is the bus the data server is on.
    LinuxCalendarStore(UserDefaults& defaults, std::optional<QDBusConnection> session, Stores stores,
        std::unique_ptr<DayWatch> dayWatch);
    ~LinuxCalendarStore() override;

    [[nodiscard]] Authorization authorization() override;
    void requestFullAccess(std::function<void(bool granted)> answered) override;
    [[nodiscard]] std::optional<QList<CalendarEvent>> events(
        const QDateTime& start, const QDateTime& end) override;
    void create(const QString& title, const QDateTime& start, const QDateTime& end,
        std::function<void(const Created&)> done) override;

private:
    /// Finds out which store it is, unless that is known or under way; anew after a refusal. On the main
    /// thread.
    void choose();
    void askTheServer();
    void useStore(std::unique_ptr<CalendarStore> store);
    void refuse();
    void runWaiting();
    [[nodiscard]] std::shared_ptr<CalendarStore> store();
    void close();

    UserDefaults& m_defaults;
    const std::optional<QDBusConnection> m_session;
    const Stores m_stores;
    const std::unique_ptr<DayWatch> m_dayWatch;
    std::unique_ptr<QDBusServiceWatcher> m_serverWatch;
    bool m_isChoosing = false;
    std::vector<std::function<void()>> m_whenSettled;

    /// Other threads wait here until it is known which store it is.
    mutable std::mutex m_mutex;
    std::condition_variable m_settled;
    std::shared_ptr<CalendarStore> m_store;
    bool m_isRefused = false;
    bool m_isClosed = false;
};

} // namespace nimbarrow
