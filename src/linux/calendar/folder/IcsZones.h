#pragma once

#include "linux/calendar/folder/IcsTime.h"

#include <QByteArray>
#include <QHash>
#include <QTimeZone>

#include <optional>
#include <vector>

namespace nimbarrow {

/// What the zones of a calendar mean: the system's where their name tells which, else as the calendar
/// describes them, else the user's own.
class IcsZones {
public:
    /// A VTIMEZONE of the calendar.
    void add(const QByteArray& component);

    /// In seconds since 1970. A time that the clocks leave out counts as if they had not been changed yet.
    [[nodiscard]] qint64 moment(const IcsTime& time) const;
    /// What the clock shows there at a moment; `zone` gives kind and zone.
    [[nodiscard]] WallTime wall(qint64 moment, const IcsTime& zone) const;

private:
    struct Change {
        qint64 moment;
        qint64 before; // seconds east
        qint64 after;
    };
    /// The changes of its clocks, in order.
    using Described = std::vector<Change>;

    [[nodiscard]] qint64 offset(const IcsTime& zone, qint64 moment) const;
    [[nodiscard]] const std::optional<QTimeZone>& known(const QString& name) const;

    QHash<QString, Described> m_described;
    mutable QHash<QString, std::optional<QTimeZone>> m_known;
};

} // namespace nimbarrow
