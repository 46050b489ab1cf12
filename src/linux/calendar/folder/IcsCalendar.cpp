#include "linux/calendar/folder/IcsCalendar.h"

#include "linux/calendar/EventIdentifier.h"
#include "linux/calendar/folder/IcsRecurrence.h"

#include <QMap>

#include <algorithm>
#include <cstdlib>

using namespace Qt::StringLiterals;

namespace nimbarrow {

namespace {

constexpr std::size_t mostEvents = 20'000;
constexpr qsizetype mostOccurrences = 5000;
constexpr int mostOfOneEvent = 500;
constexpr qint64 stepsOfCalendar = 10'000'000;
constexpr qint64 stepsOfEvent = 400'000;
constexpr qint64 day = 86'400;
/// What is moved by more is found only where it was.
constexpr qint64 farthest = 40 * day;

/// What tells one occurrence of a series that starts with `start` from another.
qint64 key(const IcsTime& time, const IcsTime& start)
{
    if (start.kind == IcsTime::Kind::Date)
        return midnightOf(dateOf(time.wall));
    if (time.kind != IcsTime::Kind::Date)
        return time.moment();
    // A date stands for the occurrence of that day in a series that has times.
    auto occurrence = start;
    occurrence.wall = time.wall + start.wall - midnightOf(dateOf(start.wall));
    return occurrence.moment();
}

QDateTime dateTime(const IcsTime& time)
{
    // A whole day is the user's day wherever the calendar comes from.
    if (time.kind == IcsTime::Kind::Date)
        return dateOf(time.wall).startOfDay();
    return QDateTime::fromSecsSinceEpoch(time.moment());
}

/// When an occurrence of that length ends that starts at `start`.
QDateTime endOf(const IcsEvent::Span& span, const IcsTime& start)
{
    if (start.kind == IcsTime::Kind::Date) {
        qint64 days = 1;
        if (span.end)
            days = (span.end->wall - span.start.wall) / day;
        else if (span.length)
            days = span.length->days + span.length->seconds / day;
        return dateOf(start.wall + std::max<qint64>(days, 1) * day).startOfDay();
    }
    if (span.end) {
        const auto lasts = span.end->moment() - span.start.moment();
        return dateTime(start).addSecs(std::max<qint64>(lasts, 0));
    }
    if (span.length) {
        auto last = start;
        last.wall += span.length->days * day;
        return dateTime(last).addSecs(span.length->seconds);
    }
    return dateTime(start);
}

qint64 lengthOf(const IcsEvent::Span& span)
{
    return dateTime(span.start).secsTo(endOf(span, span.start));
}

} // namespace

/// What all that happens in one calendar may cost.
struct IcsCalendar::Budget {
    qint64 left = stepsOfCalendar;
};

/// A series and what was changed of it.
struct IcsCalendar::Series {
    const IcsEvent* whole = nullptr;
    QHash<QString, const IcsEvent*> changed;
    /// The keys of those that stand by themselves.
    QSet<qint64> single;
    /// By the key of the first of them, those that stand for all that come then.
    QMap<qint64, const IcsEvent*> onward;

    /// What an occurrence with that key is changed to; null for one that is as the rule has it.
    [[nodiscard]] const IcsEvent* changeOf(qint64 key) const
    {
        const auto next = onward.upperBound(key);
        return next == onward.begin() ? nullptr : *std::prev(next);
    }
};

IcsCalendar::IcsCalendar(const QDateTime& start, const QDateTime& end)
    : m_start(start)
    , m_end(end)
{
}

void IcsCalendar::add(std::shared_ptr<const IcsFile> file)
{
    if (m_count >= mostEvents)
        return;
    m_count += file->events.size();
    m_files.push_back(std::move(file));
}

std::optional<QColor> IcsCalendar::color() const
{
    const auto file = std::ranges::find_if(m_files, [](const auto& f) { return f->color.has_value(); });
    return file == m_files.end() ? std::nullopt : (*file)->color;
}

QString IcsCalendar::name() const
{
    const auto file = std::ranges::find_if(m_files, [](const auto& f) { return !f->name.isEmpty(); });
    return file == m_files.end() ? QString() : (*file)->name;
}

QList<CalendarEvent> IcsCalendar::events() const
{
    QHash<QString, Series> all;
    QList<const IcsEvent*> alone;
    for (const auto& file : m_files) {
        for (const auto& event : file->events) {
            if (event.uid.isEmpty()) {
                alone += &event;
                continue;
            }
            auto& series = all[event.uid];
            auto& place = event.recurrenceId
                ? series.changed[QString::number(key(*event.recurrenceId, event.span.start))]
                : series.whole;
            // The same event twice: the later edition counts.
            if (!place || place->sequence <= event.sequence)
                place = &event;
        }
    }

    QList<CalendarEvent> result;
    Budget budget;
    for (const auto* const event : alone)
        expand(*event, {}, budget, result);
    for (auto& series : all) {
        for (const auto* const event : series.changed) {
            const auto id = series.whole ? key(*event->recurrenceId, series.whole->span.start) : 0;
            if (event->isOnward && series.whole) {
                series.onward.insert(id, event);
            } else {
                series.single += id;
                addOccurrence(*event, event->span, event->span.start, *event->recurrenceId, result);
            }
        }
        if (series.whole)
            expand(*series.whole, series, budget, result);
    }
    return result;
}

void IcsCalendar::expand(
    const IcsEvent& event, const Series& series, Budget& budget, QList<CalendarEvent>& events) const
{
    const auto& first = event.span.start;
    auto done = series.single;
    // One that fills the day must not leave the others without room.
    const auto room = std::min(mostOccurrences, events.size() + mostOfOneEvent);
    for (const auto& time : event.leftOut)
        done += key(time, first);
    const auto add = [&](const IcsEvent::Span& span, const IcsTime& start) {
        const auto id = key(start, first);
        if (done.contains(id) || events.size() >= room)
            return;
        done += id;
        if (const auto* const change = series.changeOf(id)) {
            auto moved = change->span.start;
            moved.wall += start.wall - change->recurrenceId->wall;
            addOccurrence(*change, change->span, moved, start, events);
        } else {
            addOccurrence(event, span, start, start, events);
        }
    };
    add(event.span, first);
    for (const auto& span : event.added)
        add(span.end || span.length ? span : event.span, span.start);

    // Long enough before that what began then may still last, and wherever it was moved to.
    auto lasts = lengthOf(event.span);
    qint64 moved = 0;
    for (const auto* const change : series.onward) {
        lasts = std::max(lasts, lengthOf(change->span));
        moved = std::max(moved, std::abs(change->span.start.wall - change->recurrenceId->wall));
    }
    const auto from
        = m_start.toSecsSinceEpoch() - std::max<qint64>(lasts, 0) - std::min(moved, farthest) - 2 * day;
    const auto latest = m_end.toSecsSinceEpoch() + std::min(moved, farthest) + 2 * day;
    for (const auto& rule : event.rules) {
        auto to = latest;
        if (const auto until = IcsTime::of(rule.until)) {
            const auto last = until->kind == IcsTime::Kind::Date ? until->wall + day - 1
                : until->kind == IcsTime::Kind::Utc              ? first.wallAt(until->wall)
                                                                 : until->wall;
            to = std::min(to, last);
        }
        auto steps = std::min(budget.left, stepsOfEvent);
        const auto before = steps;
        IcsRecurrence(rule, first).visit(from, to, steps, [&](WallTime wall) {
            auto start = first;
            start.wall = wall;
            add(event.span, start);
        });
        budget.left -= before - steps;
    }
}

void IcsCalendar::addOccurrence(const IcsEvent& event, const IcsEvent::Span& span, const IcsTime& start,
    const IcsTime& named, QList<CalendarEvent>& events) const
{
    const auto from = dateTime(start);
    const auto to = endOf(span, start);
    if (!from.isValid() || !to.isValid() || from >= m_end || events.size() >= mostOccurrences)
        return;
    if (to <= m_start && (to < from || from < m_start || to != from))
        return;
    auto occurrence = event.details;
    occurrence.start = from;
    occurrence.end = to;
    occurrence.isAllDay = start.kind == IcsTime::Kind::Date;
    occurrence.isDetached = event.recurrenceId.has_value();
    occurrence.hasRecurrenceRules = event.recurs() && !occurrence.isDetached;
    occurrence.identifier = EventIdentifier { EventIdentifier::Kind::File, event.path, event.uid,
        event.recurs() || event.recurrenceId ? named.text() : QString() }
                                .text();
    events += occurrence;
}

} // namespace nimbarrow
