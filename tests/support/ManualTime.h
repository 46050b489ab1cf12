#pragma once

#include "platform/Clock.h"
#include "platform/Scheduler.h"

#include <QTimeZone>

#include <list>

namespace nimbarrow {

/// Clock and scheduler over one time that the test moves by hand. Each task runs at its own due moment, in
/// order of time, and tasks of one moment in the order they were set.
class ManualTime final : public Clock, public Scheduler {
public:
    [[nodiscard]] Instant now() const override { return m_now; }
    [[nodiscard]] QDateTime wallTime() const override { return m_wall; }

    Timer after(Duration delay, Task task) override { return add(delay, {}, std::move(task)); }
    Timer every(Duration period, Duration /*tolerance*/, Task task) override
    {
        return add(period, period, std::move(task));
    }

    void advance(Duration by)
    {
        const auto end = m_now + by;
        for (auto next = firstDue(end); next != m_entries.end(); next = firstDue(end)) {
            moveTo(next->due);
            // The task may drop its own timer, so nothing of the entry is touched after it has run.
            const auto task = next->task;
            if (next->period > Duration::zero())
                next->due += next->period;
            else
                next->due = Instant::max();
            task();
        }
        moveTo(end);
    }

    /// The user sets the clock; delays go on as they were.
    void setWallTime(const QDateTime& time) { m_wall = time; }

    /// How many tasks are still to run.
    [[nodiscard]] int pending() const
    {
        int count = 0;
        for (const auto& entry : m_entries)
            count += entry.due != Instant::max() ? 1 : 0;
        return count;
    }

private:
    struct Entry {
        Instant due;
        Duration period;
        Task task;
    };
    using Entries = std::list<Entry>;

    class Place final : public Timer::Backend {
    public:
        Place(Entries& entries, Entries::iterator entry)
            : m_entries(entries)
            , m_entry(entry)
        {
        }
        ~Place() override { m_entries.erase(m_entry); }

    private:
        Entries& m_entries;
        Entries::iterator m_entry;
    };

    Timer add(Duration delay, Duration period, Task task)
    {
        m_entries.push_back({ m_now + delay, period, std::move(task) });
        return Timer(std::make_unique<Place>(m_entries, std::prev(m_entries.end())));
    }

    Entries::iterator firstDue(Instant end)
    {
        auto first = m_entries.end();
        for (auto entry = m_entries.begin(); entry != m_entries.end(); ++entry) {
            if (entry->due <= end && (first == m_entries.end() || entry->due < first->due))
                first = entry;
        }
        return first;
    }

    void moveTo(Instant instant)
    {
        m_wall = m_wall.addMSecs(std::chrono::duration_cast<Duration>(instant - m_now).count());
        m_now = instant;
    }

    Instant m_now {};
    QDateTime m_wall = QDateTime::fromSecsSinceEpoch(1'772'358'067, QTimeZone::utc());
    Entries m_entries;
};

} // namespace nimbarrow
