#include "calendar/TimelineLayout.h"

#include <algorithm>
#include <cmath>
#include <ranges>
#include <vector>

namespace nimbarrow::timelinelayout {

namespace {

constexpr qint64 dayLength = 86'400; // s
constexpr double leastWidth = 6;
constexpr double hour = 3600; // s

} // namespace

double offset(const QDateTime& dayStart, const QDateTime& moment)
{
    return static_cast<double>(dayStart.msecsTo(moment)) / 1000 / hour * hourWidth;
}

Layout place(const QList<DayEvent>& events, const QDateTime& dayStart)
{
    const auto dayEnd = dayStart.addSecs(dayLength);
    QList<DayEvent> timed;
    std::ranges::copy_if(events, std::back_inserter(timed), [&](const DayEvent& event) {
        return !event.isAllDay && event.end > dayStart && event.start < dayEnd;
    });
    std::ranges::stable_sort(timed, DayEvent::isBefore);

    Layout layout;
    std::vector<QDateTime> rowEnds;
    for (const auto& event : std::as_const(timed)) {
        const auto start = std::max(event.start, dayStart);
        const auto end = std::min(event.end, dayEnd);
        const auto x = offset(dayStart, start);
        Placement placement { event, x, std::max(offset(dayStart, end) - x, leastWidth), 0, false };
        const auto free
            = std::ranges::find_if(rowEnds, [&start](const QDateTime& rowEnd) { return rowEnd <= start; });
        if (free != rowEnds.end()) {
            *free = end;
            placement.row = static_cast<int>(free - rowEnds.begin());
        } else if (rowEnds.size() < maxRows) {
            placement.row = static_cast<int>(rowEnds.size());
            rowEnds.push_back(end);
        } else {
            rowEnds.back() = std::max(rowEnds.back(), end);
            placement.row = maxRows - 1;
            placement.overflow = true;
        }
        layout.placements << placement;
    }
    layout.rowsUsed = std::max(1, static_cast<int>(rowEnds.size()));
    return layout;
}

QList<Placement> uncovered(const QList<Placement>& placements)
{
    // By the point: less of an event cannot be seen or hit. The rows themselves have one event at a time.
    std::vector<bool> isCovered(static_cast<std::size_t>(dayWidth) + 1);
    QList<Placement> seen;
    for (const auto& placement : placements | std::views::reverse) {
        if (placement.overflow) {
            const auto first = isCovered.begin() + static_cast<std::ptrdiff_t>(placement.x);
            const auto end = isCovered.begin()
                + static_cast<std::ptrdiff_t>(
                    std::min(std::ceil(placement.x + placement.width), dayWidth + 1));
            if (std::find(first, end, false) == end)
                continue;
            std::fill(first, end, true);
        }
        seen << placement;
    }
    std::ranges::reverse(seen);
    return seen;
}

} // namespace nimbarrow::timelinelayout
