#include "linux/calendar/CalendarSource.h"

#include <algorithm>
#include <tuple>
#include <utility>

namespace nimbarrow {

namespace {

bool areOfTheSameTime(const CalendarSource::Question& one, const CalendarSource::Question& other)
{
    return one.start == other.start && one.end == other.end;
}

} // namespace

bool CalendarSource::isOver(const Question& question) const
{
    return state == State::Absent || state == State::Refused
        || (state == State::Present && m_answered >= question.number);
}

bool CalendarSource::hasTold(const Question& question) const
{
    return state == State::Present && m_answered >= question.number && !m_hasFailed
        && areOfTheSameTime(question, m_toldOf);
}

QList<CalendarEvent> CalendarSource::lastTold(const Question& question) const
{
    return state == State::Present && areOfTheSameTime(question, m_toldOf) ? m_told : QList<CalendarEvent>();
}

bool CalendarSource::accept(const Question& question, std::optional<QList<CalendarEvent>> events)
{
    const bool isLate = m_givenUp > std::exchange(m_answered, question.number);
    m_hasFailed = !events;
    if (!events)
        return false;
    // Stores tell the same day in any order.
    std::ranges::sort(*events, [](const CalendarEvent& one, const CalendarEvent& other) {
        return std::tie(one.identifier, one.start) < std::tie(other.identifier, other.start);
    });
    const bool isNew = !areOfTheSameTime(question, m_toldOf) || *events != m_told;
    m_toldOf = question;
    m_told = *std::move(events);
    return isLate && isNew;
}

} // namespace nimbarrow
