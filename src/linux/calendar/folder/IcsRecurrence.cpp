#include "linux/calendar/folder/IcsRecurrence.h"

#include <algorithm>
#include <cstdlib>

namespace nimbarrow {

namespace {

/// What is done with an occurrence costs more than to find it.
constexpr qint64 visitSteps = 50;

template <std::size_t size>
std::vector<int> numbers(const short (&list)[size]) // NOLINT(modernize-avoid-c-arrays): libical's own
{
    const auto* const end = std::find(std::begin(list), std::end(list), ICAL_RECURRENCE_ARRAY_MAX);
    return { std::begin(list), end };
}

bool has(const std::vector<int>& list, int number)
{
    return std::find(list.begin(), list.end(), number) != list.end();
}

/// From the front or from the back of `size`.
bool hasPlace(const std::vector<int>& list, int place, int size)
{
    return has(list, place) || has(list, place - size - 1);
}

/// libical counts from Sunday, 1; Qt from Monday.
int qtDay(int day)
{
    return day <= 1 ? Qt::Sunday : day - 1;
}

} // namespace

/// Where the occurrences go: it knows the bounds and when to stop.
struct IcsRecurrence::Sink {
    WallTime from;
    WallTime to;
    qint64& budget;
    const std::function<void(WallTime)>& visit;
    /// How many may still come; negative: any number.
    qint64 left;

    [[nodiscard]] bool isDone() const { return left == 0 || budget <= 0; }

    void add(WallTime time)
    {
        --budget;
        if (isDone())
            return;
        if (left > 0)
            --left;
        if (time >= from && time <= to) {
            budget -= visitSteps;
            visit(time);
        }
    }
};

IcsRecurrence::IcsRecurrence(const icalrecurrencetype& rule, const IcsTime& start)
    : m_start(start.wall)
    , m_startDay(dateOf(start.wall))
    , m_frequency(rule.freq)
    , m_interval(std::max<int>(rule.interval, 1))
    , m_count(rule.count)
    , m_weekStart(rule.week_start == ICAL_NO_WEEKDAY ? int(Qt::Monday) : qtDay(rule.week_start))
    // Another calendar's months are not ours.
    , m_isUnknown(rule.rscale != nullptr || rule.freq == ICAL_NO_RECURRENCE)
    , m_months(numbers(rule.by_month))
    , m_weeks(numbers(rule.by_week_no))
    , m_yearDays(numbers(rule.by_year_day))
    , m_monthDays(numbers(rule.by_month_day))
    , m_hours(numbers(rule.by_hour))
    , m_minutes(numbers(rule.by_minute))
    , m_seconds(numbers(rule.by_second))
    , m_positions(numbers(rule.by_set_pos))
{
    for (const int day : numbers(rule.by_day)) {
        m_weekdays.push_back({ qtDay(icalrecurrencetype_day_day_of_week(short(day))),
            icalrecurrencetype_day_position(short(day)) });
    }
    if (start.kind == IcsTime::Kind::Date) {
        m_hours = m_minutes = m_seconds = {};
    }
    // Days have no hours to repeat, and no calendar picks among the hours, the minutes or the seconds.
    const bool isPicked
        = !(m_months.empty() && m_yearDays.empty() && m_monthDays.empty() && m_weekdays.empty()
            && m_hours.empty() && m_minutes.empty() && m_seconds.empty() && m_positions.empty());
    if (m_frequency < ICAL_DAILY_RECURRENCE && (isPicked || start.kind == IcsTime::Kind::Date))
        m_isUnknown = true;
}

void IcsRecurrence::visit(
    WallTime from, WallTime to, qint64& budget, const std::function<void(WallTime)>& visit) const
{
    if (m_isUnknown)
        return;
    Sink sink { std::max(from, m_start), to, budget, visit, m_count > 0 ? m_count : -1 };
    if (m_frequency < ICAL_DAILY_RECURRENCE)
        visitClock(sink);
    else
        visitPeriods(sink);
}

void IcsRecurrence::visitPeriods(Sink& sink) const
{
    const auto times = timesOfDay();
    const auto last = dateOf(sink.to);
    // A count counts from the start.
    auto index = m_count > 0 ? 0 : std::max<qint64>(0, indexBefore(dateOf(sink.from)));
    std::vector<WallTime> found;
    for (; !sink.isDone(); ++index) {
        --sink.budget;
        auto [first, end] = period(index);
        if (!first.isValid() || first > last.addDays(7))
            return;
        const int year = first.year();
        // The weeks of a year begin before it and end behind it.
        if (!m_weeks.empty() && m_frequency == ICAL_YEARLY_RECURRENCE) {
            first = first.addDays(-7);
            end = end.addDays(7);
        }
        // Where nothing is counted, what lies outside need not be found.
        if (m_count <= 0 && m_positions.empty()) {
            first = std::max(first, dateOf(sink.from));
            end = std::min(end, last.addDays(1));
        }
        found.clear();
        for (auto day = first; day < end && sink.budget > 0; day = day.addDays(1)) {
            sink.budget -= 2;
            if (!isDayWanted(day, year))
                continue;
            const auto midnight = midnightOf(day);
            sink.budget -= qint64(times.size());
            for (const auto time : times)
                found.push_back(midnight + time);
        }
        if (!m_positions.empty()) {
            std::vector<WallTime> picked;
            for (std::size_t i = 0; i < found.size(); ++i) {
                if (hasPlace(m_positions, int(i) + 1, int(found.size())))
                    picked.push_back(found[i]);
            }
            found = std::move(picked);
        }
        for (const auto time : found) {
            if (time >= m_start && !sink.isDone())
                sink.add(time);
        }
    }
}

void IcsRecurrence::visitClock(Sink& sink) const
{
    const qint64 unit = m_frequency == ICAL_HOURLY_RECURRENCE ? 3600
        : m_frequency == ICAL_MINUTELY_RECURRENCE             ? 60
                                                              : 1;
    const auto step = unit * m_interval;
    const auto skipped = std::max<qint64>(0, (sink.from - m_start + step - 1) / step);
    if (m_count > 0)
        sink.left = std::max<qint64>(0, m_count - skipped);
    for (auto time = m_start + skipped * step; time <= sink.to && !sink.isDone(); time += step)
        sink.add(time);
}

std::array<QDate, 2> IcsRecurrence::period(qint64 index) const
{
    // Far above any year that is asked for, and no overflow below.
    if (index > 40'000'000 / m_interval)
        return {};
    const auto count = index * m_interval;
    switch (m_frequency) {
    case ICAL_DAILY_RECURRENCE: {
        const auto day = m_startDay.addDays(count);
        return { day, day.addDays(1) };
    }
    case ICAL_WEEKLY_RECURRENCE: {
        const auto week
            = m_startDay.addDays(-((m_startDay.dayOfWeek() - m_weekStart + 7) % 7)).addDays(7 * count);
        return { week, week.addDays(7) };
    }
    case ICAL_MONTHLY_RECURRENCE: {
        const auto month = QDate(m_startDay.year(), m_startDay.month(), 1).addMonths(int(count));
        return { month, month.addMonths(1) };
    }
    default: {
        const auto year = QDate(m_startDay.year(), 1, 1).addYears(int(count));
        return { year, year.addYears(1) };
    }
    }
}

qint64 IcsRecurrence::indexBefore(QDate date) const
{
    const auto days = m_startDay.daysTo(date);
    const auto months = 12LL * (date.year() - m_startDay.year()) + (date.month() - m_startDay.month());
    switch (m_frequency) {
    case ICAL_DAILY_RECURRENCE: return days / m_interval - 1;
    case ICAL_WEEKLY_RECURRENCE: return days / 7 / m_interval - 1;
    case ICAL_MONTHLY_RECURRENCE: return months / m_interval - 1;
    default: return (date.year() - m_startDay.year()) / m_interval - 1;
    }
}

bool IcsRecurrence::isDayWanted(QDate day, int periodYear) const
{
    if (!m_months.empty() && !has(m_months, day.month()))
        return false;
    const bool isYearly = m_frequency == ICAL_YEARLY_RECURRENCE;
    if (!m_weeks.empty() && isYearly && !isInWeek(day, periodYear))
        return false;
    if (!m_yearDays.empty() && !hasPlace(m_yearDays, day.dayOfYear(), day.daysInYear()))
        return false;
    if (!m_monthDays.empty() && m_frequency != ICAL_WEEKLY_RECURRENCE
        && !hasPlace(m_monthDays, day.day(), day.daysInMonth()))
        return false;
    if (!m_weekdays.empty())
        return isWeekdayWanted(day);
    return !m_yearDays.empty() || !m_monthDays.empty() || isUsualDay(day);
}

bool IcsRecurrence::isWeekdayWanted(QDate day) const
{
    const bool inMonth = m_frequency == ICAL_MONTHLY_RECURRENCE
        || (m_frequency == ICAL_YEARLY_RECURRENCE && !m_months.empty());
    const bool inYear = m_frequency == ICAL_YEARLY_RECURRENCE && m_months.empty() && m_weeks.empty();
    const int place = inMonth ? day.day() : day.dayOfYear();
    const int size = inMonth ? day.daysInMonth() : day.daysInYear();
    return std::any_of(m_weekdays.begin(), m_weekdays.end(), [&](const Weekday& wanted) {
        if (wanted.day != day.dayOfWeek())
            return false;
        if (wanted.position == 0 || (!inMonth && !inYear))
            return true;
        return wanted.position > 0 ? (place - 1) / 7 + 1 == wanted.position
                                   : (size - place) / 7 + 1 == -wanted.position;
    });
}

/// Where the rule names no day, the start does.
bool IcsRecurrence::isUsualDay(QDate day) const
{
    switch (m_frequency) {
    case ICAL_WEEKLY_RECURRENCE: return day.dayOfWeek() == m_startDay.dayOfWeek();
    case ICAL_MONTHLY_RECURRENCE: return day.day() == m_startDay.day();
    case ICAL_YEARLY_RECURRENCE:
        if (!m_weeks.empty())
            return day.dayOfWeek() == m_startDay.dayOfWeek();
        return day.day() == m_startDay.day() && (!m_months.empty() || day.month() == m_startDay.month());
    default: return true;
    }
}

bool IcsRecurrence::isInWeek(QDate day, int year) const
{
    // The first week is the first one with four days in the year.
    const auto firstWeek = [this](int y) {
        const QDate fourth(y, 1, 4);
        return fourth.addDays(-((fourth.dayOfWeek() - m_weekStart + 7) % 7));
    };
    const auto first = firstWeek(year);
    const auto next = firstWeek(year + 1);
    if (day < first || day >= next)
        return false;
    return hasPlace(m_weeks, int(first.daysTo(day) / 7) + 1, int(first.daysTo(next) / 7));
}

std::vector<WallTime> IcsRecurrence::timesOfDay() const
{
    const auto ofDay = int(m_start - midnightOf(m_startDay));
    const auto hours = m_hours.empty() ? Numbers { ofDay / 3600 } : m_hours;
    const auto minutes = m_minutes.empty() ? Numbers { ofDay / 60 % 60 } : m_minutes;
    const auto seconds = m_seconds.empty() ? Numbers { ofDay % 60 } : m_seconds;
    std::vector<WallTime> times;
    for (const int hour : hours) {
        for (const int minute : minutes) {
            for (const int second : seconds)
                times.push_back(hour * 3600 + minute * 60 + second);
        }
    }
    std::sort(times.begin(), times.end());
    times.erase(std::unique(times.begin(), times.end()), times.end());
    return times;
}

} // namespace nimbarrow
