#pragma once

#include <QDate>
#include <QString>

#include <libical/ical.h>
#include <optional>

namespace nimbarrow {

/// Seconds since the beginning of 1970 on a clock on the wall, whatever zone the wall is in.
using WallTime = qint64;

[[nodiscard]] QDate dateOf(WallTime time);
/// Of that day, or, where it is none, 0.
[[nodiscard]] WallTime midnightOf(QDate date);

/// A time as an iCalendar property has it: it means a moment only together with a zone.
struct IcsTime {
    enum class Kind { Date, Floating, Utc, Zoned };

    Kind kind = Kind::Floating;
    WallTime wall = 0;
    /// The zone's name in the calendar, where it has one.
    QString zone;

    /// Of the property that names the zone, or of none where it can have no zone. None for what is no date.
    [[nodiscard]] static std::optional<IcsTime> of(const icaltimetype& time, icalproperty* property);

    /// As iCalendar writes it, without the zone.
    [[nodiscard]] QString text() const;
};

} // namespace nimbarrow
