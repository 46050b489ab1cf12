#pragma once

#include <QTimeZone>

#include <variant>
#include <vector>

namespace nimbarrow {

/// A time zone: one of the system's, or one as a calendar describes it.
class IcsZone {
public:
    struct Change {
        qint64 moment; // seconds since 1970
        qint64 before; // seconds east
        qint64 after;
    };

    explicit IcsZone(const QTimeZone& zone);
    /// The changes of its clocks, at least one, in order.
    explicit IcsZone(std::vector<Change> changes);

    /// Seconds east of Greenwich, at seconds since 1970.
    [[nodiscard]] qint64 offsetAt(qint64 moment) const;

private:
    std::variant<QTimeZone, std::vector<Change>> m_clock;
};

} // namespace nimbarrow
