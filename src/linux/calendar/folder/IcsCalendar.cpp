#include "linux/calendar/folder/IcsCalendar.h"

#include "linux/calendar/folder/EventDetails.h"
#include "linux/calendar/folder/IcsRecurrence.h"
#include "linux/calendar/folder/IcsScanner.h"
#include "linux/calendar/EventIdentifier.h"

#include <algorithm>

using namespace Qt::StringLiterals;

namespace nimbarrow {

namespace {

constexpr std::size_t mostEvents = 20'000;
constexpr qsizetype mostOccurrences = 5000;
constexpr int mostOfOneEvent = 500;
constexpr qint64 stepsOfCalendar = 10'000'000;
constexpr qint64 stepsOfEvent = 400'000;
constexpr qint64 day = 86'400;

/// The date in the first property of that name, as a number like 20261121; 0 where there is none.
int roughDate(const QByteArray& component, const QByteArray& name)
{
    const auto at = component.indexOf("\r\n" + name);
    if (at < 0)
        return 0;
    const auto end = component.indexOf("\r\n", at + 2);
    const auto line = QByteArrayView(component).sliced(at, end - at);
    const auto colon = line.lastIndexOf(':');
    return colon < 0 ? 0
                     : line.sliced(colon + 1).first(std::min<qsizetype>(8, line.size() - colon - 1)).toInt();
}

int asNumber(QDate date)
{
    return date.year() * 10'000 + date.month() * 100 + date.day();
}

} // namespace

/// What all that happens in one calendar may cost.
struct IcsCalendar::Budget {
    qint64 left = stepsOfCalendar;
};

/// A series and those of its occurrences that were changed.
struct IcsCalendar::Series {
    const IcsEvent* whole = nullptr;
    QHash<QString, const IcsEvent*> changed;
};

IcsCalendar::IcsCalendar(const QDateTime& start, const QDateTime& end, QSet<QString> ownAddresses)
    : m_start(start)
    , m_end(end)
    , m_ownAddresses(std::move(ownAddresses))
{
}

void IcsCalendar::add(QByteArrayView text, const QString& path)
{
    // Set once for the whole process, and never to anything else.
    icalerror_set_errors_are_fatal(false);
    IcsScanner scanner;
    scanner.property = [this](const QByteArray& name, const QByteArray& value) { takeProperty(name, value); };
    scanner.zone = [this](const QByteArray& component) { m_zones.add(component); };
    scanner.event = [this, &path](const QByteArray& component) {
        if (m_events.size() >= mostEvents || !mayMatter(component))
            return;
        if (auto event = IcsEvent::parse(component, m_ownAddresses)) {
            event->path = path;
            m_events.push_back(std::move(*event));
        }
    };
    scanner.scan(text);
}

void IcsCalendar::takeProperty(const QByteArray& name, const QByteArray& value)
{
    if (name == "X-APPLE-CALENDAR-COLOR" || name == "COLOR") {
        if (const auto color = parseColor(value))
            m_color = color;
    } else if (name == "X-OWNER" || name == "X-WR-CALNAME") {
        // Some services name a person's first calendar by the address.
        if (const auto address = mailAddress(QString::fromUtf8(value)); address.contains(u'@'))
            m_ownAddresses += address;
    }
}

std::optional<QColor> IcsCalendar::parseColor(const QByteArray& text)
{
    auto name = QString::fromLatin1(text.trimmed().left(64));
    if (name.startsWith(u'#') && name.size() == 9)
        name.truncate(7);
    const auto color = QColor::fromString(name);
    return color.isValid() ? std::optional(color) : std::nullopt;
}

/// Most events of a calendar are over, and reading them costs far more than seeing that.
bool IcsCalendar::mayMatter(const QByteArray& component) const
{
    for (const auto* const name : { "\r\nRRULE", "\r\nRDATE", "\r\nRECURRENCE-ID", "\r\nDURATION" }) {
        if (component.contains(name))
            return true;
    }
    const int start = roughDate(component, "DTSTART");
    const int end = roughDate(component, "DTEND");
    if (start == 0)
        return true;
    // Two days more, for the zones and for whole days.
    return start <= asNumber(m_end.date().addDays(2))
        && std::max(start, end) >= asNumber(m_start.date().addDays(-2));
}

QList<CalendarEvent> IcsCalendar::events() const
{
    QHash<QString, Series> series;
    QList<const IcsEvent*> single;
    for (const auto& event : m_events) {
        if (event.uid.isEmpty()) {
            single += &event;
            continue;
        }
        auto& known = series[event.uid];
        auto& place = event.recurrenceId ? known.changed[QString::number(key(*event.recurrenceId, event))]
                                         : known.whole;
        // The same event twice: the later edition counts.
        if (!place || place->sequence <= event.sequence)
            place = &event;
    }

    QList<CalendarEvent> result;
    Budget budget;
    for (const auto* const event : single)
        expand(*event, {}, budget, result);
    for (const auto& [uid, one] : series.asKeyValueRange()) {
        QSet<qint64> changed;
        for (const auto* const occurrence : one.changed) {
            if (one.whole)
                changed += key(*occurrence->recurrenceId, *one.whole);
            addOccurrence(*occurrence, occurrence->start, result);
        }
        if (one.whole)
            expand(*one.whole, changed, budget, result);
    }
    return result;
}

void IcsCalendar::expand(
    const IcsEvent& event, const QSet<qint64>& changed, Budget& budget, QList<CalendarEvent>& events) const
{
    QSet<qint64> done = changed;
    // One that fills the day must not leave the others without room.
    const auto room = std::min(mostOccurrences, events.size() + mostOfOneEvent);
    for (const auto& time : event.leftOut)
        done += key(time, event);
    const auto add = [&](const IcsTime& start) {
        const auto id = key(start, event);
        if (!done.contains(id) && events.size() < room) {
            done += id;
            addOccurrence(event, start, events);
        }
    };
    add(event.start);
    for (const auto& time : event.added)
        add(time);

    // Long enough before that what began then may still last.
    const auto first = dateTime(event.start);
    const auto lasts = first.secsTo(endOf(event, event.start)) + 2 * day;
    const auto from = m_start.toSecsSinceEpoch() - std::max<qint64>(lasts, 2 * day);
    for (const auto& rule : event.rules) {
        auto to = m_end.toSecsSinceEpoch() + 2 * day;
        if (const auto until = IcsTime::of(rule.until, nullptr)) {
            const auto last = until->kind == IcsTime::Kind::Date ? until->wall + day - 1
                : until->kind == IcsTime::Kind::Utc              ? m_zones.wall(until->wall, event.start)
                                                                 : until->wall;
            to = std::min(to, last);
        }
        auto steps = std::min(budget.left, stepsOfEvent);
        const auto before = steps;
        IcsRecurrence(rule, event.start).visit(from, to, steps, [&](WallTime wall) {
            auto start = event.start;
            start.wall = wall;
            add(start);
        });
        budget.left -= before - steps;
    }
}

/// What tells one occurrence of a series from another.
qint64 IcsCalendar::key(const IcsTime& time, const IcsEvent& event) const
{
    // A date may stand for the occurrence of that day in a series that has times.
    if (time.kind == IcsTime::Kind::Date && event.start.kind != IcsTime::Kind::Date) {
        auto start = event.start;
        start.wall = time.wall + event.start.wall - midnightOf(dateOf(event.start.wall));
        return m_zones.moment(start);
    }
    if (event.start.kind == IcsTime::Kind::Date)
        return midnightOf(dateOf(time.wall));
    return m_zones.moment(time);
}

QDateTime IcsCalendar::dateTime(const IcsTime& time) const
{
    // A whole day is the user's day wherever the calendar comes from.
    if (time.kind == IcsTime::Kind::Date)
        return dateOf(time.wall).startOfDay();
    return QDateTime::fromSecsSinceEpoch(m_zones.moment(time));
}

QDateTime IcsCalendar::endOf(const IcsEvent& event, const IcsTime& start) const
{
    if (start.kind == IcsTime::Kind::Date) {
        qint64 days = 1;
        if (event.end)
            days = (event.end->wall - event.start.wall) / day;
        else if (event.length)
            days = event.length->days + event.length->seconds / day;
        return dateOf(start.wall + std::max<qint64>(days, 1) * day).startOfDay();
    }
    if (event.end) {
        const auto lasts = m_zones.moment(*event.end) - m_zones.moment(event.start);
        return dateTime(start).addSecs(std::max<qint64>(lasts, 0));
    }
    if (event.length) {
        auto last = start;
        last.wall += event.length->days * day;
        return dateTime(last).addSecs(event.length->seconds);
    }
    return dateTime(start);
}

void IcsCalendar::addOccurrence(
    const IcsEvent& event, const IcsTime& start, QList<CalendarEvent>& events) const
{
    const auto from = dateTime(start);
    const auto to = endOf(event, start);
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
    const auto& named = event.recurrenceId ? *event.recurrenceId : start;
    occurrence.identifier = EventIdentifier { EventIdentifier::Kind::File, event.path, event.uid,
        event.recurs() || event.recurrenceId ? named.text() : QString() }
                                .text();
    events += occurrence;
}

} // namespace nimbarrow
