#include "linux/calendar/folder/IcsZones.h"

#include "linux/calendar/folder/IcalPointers.h"
#include "linux/calendar/folder/IcsRecurrence.h"

#include <QDateTime>
#include <QStringList>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace nimbarrow {

namespace {

constexpr qsizetype mostZones = 200;
constexpr std::size_t mostChanges = 2000;
constexpr qint64 budgetOfZone = 2'000'000;

std::optional<QTimeZone> systemZone(const QString& name)
{
    // A name becomes the path of a file in the zones' folder.
    const bool isPlain = std::all_of(name.begin(), name.end(), [](QChar c) {
        return c.unicode() < 128
            && (c.isLetterOrNumber() || c == u'/' || c == u'_' || c == u'-' || c == u'+');
    });
    const auto id = name.toLatin1();
    if (!isPlain || id.isEmpty() || id.size() > 64 || id.startsWith('/')
        || !QTimeZone::isTimeZoneIdAvailable(id))
        return {};
    QTimeZone zone(id);
    return zone.isValid() ? std::optional(zone) : std::nullopt;
}

/// "Europe/Berlin", also at the end of a path; or a Windows name.
std::optional<QTimeZone> zoneOfName(const QString& name)
{
    if (auto zone = systemZone(name))
        return zone;
    const auto parts = name.split(u'/', Qt::SkipEmptyParts);
    for (const qsizetype count : { 3, 2 }) {
        if (parts.size() > count) {
            if (auto zone = systemZone(parts.last(count).join(u'/')))
                return zone;
        }
    }
    if (const auto id = QTimeZone::windowsIdToDefaultIanaId(name.toUtf8()); !id.isEmpty())
        return QTimeZone(id);
    return {};
}

qint64 bounded(int offset)
{
    constexpr int most = 86'400;
    return std::clamp(offset, -most, most);
}

} // namespace

void IcsZones::add(const QByteArray& text)
{
    const IcalComponent zone(icalcomponent_new_from_string(text.constData()));
    auto* const id = zone ? icalcomponent_get_first_property(zone.get(), ICAL_TZID_PROPERTY) : nullptr;
    const auto name = id ? QString::fromUtf8(icalproperty_get_tzid(id)) : QString();
    // The system's zones know more, and cost nothing to read.
    if (name.isEmpty() || known(name) || m_described.contains(name) || m_described.size() >= mostZones)
        return;
    Described changes;
    qint64 budget = budgetOfZone;
    for (auto* part = icalcomponent_get_first_component(zone.get(), ICAL_ANY_COMPONENT); part;
         part = icalcomponent_get_next_component(zone.get(), ICAL_ANY_COMPONENT)) {
        auto* const from = icalcomponent_get_first_property(part, ICAL_TZOFFSETFROM_PROPERTY);
        auto* const to = icalcomponent_get_first_property(part, ICAL_TZOFFSETTO_PROPERTY);
        auto* const begin = icalcomponent_get_first_property(part, ICAL_DTSTART_PROPERTY);
        if (!from || !to || !begin)
            continue;
        const auto before = bounded(icalproperty_get_tzoffsetfrom(from));
        const auto after = bounded(icalproperty_get_tzoffsetto(to));
        const auto start = IcsTime::of(icalproperty_get_dtstart(begin), begin);
        if (!start)
            continue;
        const auto add = [&](WallTime wall) {
            if (changes.size() < mostChanges)
                changes.push_back({ wall - before, before, after });
        };
        add(start->wall);
        for (auto* p = icalcomponent_get_first_property(part, ICAL_RDATE_PROPERTY); p;
             p = icalcomponent_get_next_property(part, ICAL_RDATE_PROPERTY)) {
            if (const auto time = IcsTime::of(icalproperty_get_rdate(p).time, p))
                add(time->wall);
        }
        auto* const rule = icalcomponent_get_first_property(part, ICAL_RRULE_PROPERTY);
        if (!rule)
            continue;
        const auto every = icalproperty_get_rrule(rule);
        // Clocks that change more often than a few times a year are nobody's.
        if (every.freq != ICAL_YEARLY_RECURRENCE)
            continue;
        const auto until = IcsTime::of(every.until, rule);
        const auto last = until ? until->wall + 86'400 : midnightOf(QDate(2200, 1, 1));
        IcsRecurrence(every, *start).visit(start->wall + 1, last, budget, add);
    }
    std::sort(
        changes.begin(), changes.end(), [](const Change& a, const Change& b) { return a.moment < b.moment; });
    if (!changes.empty())
        m_described.insert(name, changes);
}

const std::optional<QTimeZone>& IcsZones::known(const QString& name) const
{
    const auto found = m_known.constFind(name);
    if (found != m_known.cend())
        return *found;
    // Names come from the file: there may be many.
    if (m_known.size() > mostZones)
        m_known.clear();
    return *m_known.insert(name, zoneOfName(name));
}

qint64 IcsZones::offset(const IcsTime& zone, qint64 moment) const
{
    if (zone.kind == IcsTime::Kind::Utc)
        return 0;
    if (zone.kind == IcsTime::Kind::Zoned) {
        if (const auto& system = known(zone.zone))
            return system->offsetFromUtc(QDateTime::fromSecsSinceEpoch(moment, QTimeZone::utc()));
        if (const auto described = m_described.constFind(zone.zone); described != m_described.cend()) {
            const auto next = std::upper_bound(described->begin(), described->end(), moment,
                [](qint64 m, const Change& change) { return m < change.moment; });
            return next == described->begin() ? next->before : std::prev(next)->after;
        }
    }
    return QDateTime::fromSecsSinceEpoch(moment).offsetFromUtc();
}

qint64 IcsZones::moment(const IcsTime& time) const
{
    // The offset a day before and the one a day after; where they differ, a change of the clocks is near.
    const auto before = offset(time, time.wall - 86'400);
    const auto after = offset(time, time.wall + 86'400);
    const auto early = time.wall - before;
    if (before == after || offset(time, early) == before)
        return early;
    const auto late = time.wall - after;
    return offset(time, late) == after ? late : early;
}

WallTime IcsZones::wall(qint64 moment, const IcsTime& zone) const
{
    return moment + offset(zone, moment);
}

} // namespace nimbarrow
