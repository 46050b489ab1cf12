#pragma once

#include <QByteArray>

namespace nimbarrow {

/// Where in the system's log a line goes.
struct LogName {
    QByteArray subsystem;
    QByteArray category;

    /// Of a Qt logging category: the program's own are written "subsystem.category", and what anybody else
    /// has to say stands under the program with its whole name. `name` may be null.
    [[nodiscard]] static LogName of(const char* name);

    friend bool operator==(const LogName&, const LogName&) = default;
};

} // namespace nimbarrow
