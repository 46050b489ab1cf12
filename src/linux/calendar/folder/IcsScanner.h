#pragma once

#include <QByteArray>
#include <QByteArrayView>

#include <functional>

namespace nimbarrow {

/// Cuts an iCalendar text into what is parsed piece by piece, so that neither a broken nor a huge piece costs
/// more than itself. Linear in time, and no piece is larger than a bound.
struct IcsScanner {
    /// A property of the calendar itself, unfolded, such as "X-WR-CALNAME" and "Work"; without its
    /// parameters.
    std::function<void(const QByteArray& name, const QByteArray& value)> property;
    /// A VEVENT without what stands inside it, such as alarms and attached files.
    std::function<void(const QByteArray& component)> event;
    /// A VTIMEZONE with its parts.
    std::function<void(const QByteArray& component)> zone;

    void scan(QByteArrayView text) const;
};

} // namespace nimbarrow
