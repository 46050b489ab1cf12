#pragma once

#include <QDate>
#include <QString>

#include <libical/ical.h>
#include <memory>
#include <optional>

namespace nimbarrow {

class IcsZone;

/// Seconds since the beginning of 1970 on a clock on the wall, whatever zone the wall is in.
using WallTime = qint64;

[[nodiscard]] QDate dateOf(WallTime time);
/// Of that day, or, where it is none, 0.
[[nodiscard]] WallTime midnightOf(QDate date);

/// A time as an iCalendar property has it.
struct IcsTime {
    enum class Kind { Date, Local, Utc };

    Kind kind = Kind::Local;
    WallTime wall = 0;
    /// Of a local time; null where it is the user's.
    std::shared_ptr<const IcsZone> zone;

    /// None for what is no date.
    [[nodiscard]] static std::optional<IcsTime> of(
        const icaltimetype& time, std::shared_ptr<const IcsZone> zone = {});

    /// In seconds since 1970. A time that the clocks leave out counts as if they had not been changed yet.
    [[nodiscard]] qint64 moment() const;
    /// What the clock shows at a moment where this time is.
    [[nodiscard]] WallTime wallAt(qint64 moment) const;

    /// As iCalendar writes it, without the zone.
    [[nodiscard]] QString text() const;

private:
    [[nodiscard]] qint64 offsetAt(qint64 moment) const;
};

} // namespace nimbarrow
