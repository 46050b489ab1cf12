#include "linux/calendar/folder/IcsZone.h"

#include <QDateTime>

#include <algorithm>

namespace nimbarrow {

IcsZone::IcsZone(const QTimeZone& zone)
    : m_clock(zone)
{
}

IcsZone::IcsZone(std::vector<Change> changes)
    : m_clock(std::move(changes))
{
}

qint64 IcsZone::offsetAt(qint64 moment) const
{
    if (const auto* const zone = std::get_if<QTimeZone>(&m_clock))
        return zone->offsetFromUtc(QDateTime::fromSecsSinceEpoch(moment, QTimeZone::utc()));
    const auto& changes = std::get<std::vector<Change>>(m_clock);
    const auto next = std::upper_bound(changes.begin(), changes.end(), moment,
        [](qint64 m, const Change& change) { return m < change.moment; });
    return next == changes.begin() ? next->before : std::prev(next)->after;
}

} // namespace nimbarrow
