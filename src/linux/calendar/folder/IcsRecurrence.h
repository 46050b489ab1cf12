#pragma once

#include "linux/calendar/folder/IcsTime.h"

#include <array>
#include <functional>
#include <vector>

namespace nimbarrow {

/// The occurrences that a recurrence rule makes, on the clock on the wall. Rules come from anywhere: every
/// step costs something of a budget, and what does not end ends with the budget. libical's own iterator knows
/// no such bound, takes seconds for some impossible rules, and loses the interval where it does not start at
/// the beginning (3.0.16).
class IcsRecurrence {
public:
    IcsRecurrence(const icalrecurrencetype& rule, const IcsTime& start);

    /// Calls `visit` for the occurrences from `from` to `to`, both included, in order. `budget` is what is
    /// left of it, in steps of some ten nanoseconds each.
    void visit(WallTime from, WallTime to, qint64& budget, const std::function<void(WallTime)>& visit) const;

private:
    using Numbers = std::vector<int>;
    struct Weekday {
        int day; // as QDate has it
        int position; // 0: each one
    };
    struct Sink;

    void visitPeriods(Sink& sink) const;
    void visitClock(Sink& sink) const;
    [[nodiscard]] std::array<QDate, 2> period(qint64 index) const;
    [[nodiscard]] qint64 indexBefore(QDate date) const;
    [[nodiscard]] bool isDayWanted(QDate day, int periodYear) const;
    [[nodiscard]] bool isWeekdayWanted(QDate day) const;
    [[nodiscard]] bool isUsualDay(QDate day) const;
    [[nodiscard]] bool isInWeek(QDate day, int year) const;
    [[nodiscard]] std::vector<WallTime> timesOfDay() const;

    const WallTime m_start;
    const QDate m_startDay;
    icalrecurrencetype_frequency m_frequency;
    int m_interval;
    int m_count;
    int m_weekStart; // as QDate has it
    bool m_isUnknown;
    Numbers m_months, m_weeks, m_yearDays, m_monthDays, m_hours, m_minutes, m_seconds, m_positions;
    std::vector<Weekday> m_weekdays;
};

} // namespace nimbarrow
