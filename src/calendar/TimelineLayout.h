#pragma once

#include "calendar/DayEvent.h"

#include <QDateTime>
#include <QList>
#include <QObject>

/// Where the events of a day lie on its timeline, in at most two rows. Lengths in points.
namespace nimbarrow::timelinelayout {

inline constexpr double hourWidth = 54;
inline constexpr int maxRows = 2;
inline constexpr double dayWidth = 24 * hourWidth;

/// One event on the timeline.
struct Placement {
    Q_GADGET
    Q_PROPERTY(nimbarrow::DayEvent event MEMBER event CONSTANT)
    Q_PROPERTY(double x MEMBER x CONSTANT)
    Q_PROPERTY(double width MEMBER width CONSTANT)
    Q_PROPERTY(int row MEMBER row CONSTANT)
    Q_PROPERTY(bool overflow MEMBER overflow CONSTANT)

public:
    DayEvent event;
    /// From midnight.
    double x = 0;
    /// Never too small to be hit by the pointer.
    double width = 0;
    int row = 0;
    /// There was no free row for it, and it lies over others in the last one.
    bool overflow = false;

    friend bool operator==(const Placement&, const Placement&) = default;
};

struct Layout {
    /// In the order of the day.
    QList<Placement> placements;
    /// At least one.
    int rowsUsed = 1;
};

/// All-day events and those of other days are left out.
[[nodiscard]] Layout place(const QList<DayEvent>& events, const QDateTime& dayStart);

/// Those of which something is to be seen: what lies over others hides some of them, and there may be
/// thousands.
[[nodiscard]] QList<Placement> uncovered(const QList<Placement>& placements);

/// From midnight to `moment`.
[[nodiscard]] double offset(const QDateTime& dayStart, const QDateTime& moment);

} // namespace nimbarrow::timelinelayout
