#pragma once

#include "macos/session/Observation.h"
#include "platform/CalendarStore.h"

#include <array>
#include <memory>
#include <mutex>

namespace nimbarrow {

class WorkQueue;

/// The calendar database of the system.
class MacCalendarStore final : public CalendarStore {
public:
    MacCalendarStore();
    ~MacCalendarStore() override;

    [[nodiscard]] Authorization authorization() override;
    void requestFullAccess(std::function<void(bool)> answered) override;
    [[nodiscard]] std::optional<QList<CalendarEvent>> events(
        const QDateTime& start, const QDateTime& end) override;
    void create(const QString& title, const QDateTime& start, const QDateTime& end,
        std::function<void(const Created&)> done) override;

private:
    /// The one connection to the database, made when it is first needed. Any thread.
    class Database;

    std::unique_ptr<Database> m_database;
    Observation m_changed;
    /// Midnight, and what moves it.
    std::array<Observation, 3> m_newDays;
    std::unique_ptr<WorkQueue> m_creating;
};

} // namespace nimbarrow
