#pragma once

#include "platform/Port.h"

#include <QDateTime>

#include <chrono>

namespace nimbarrow {

/// Where the program learns the time; nothing else may ask the system.
class Clock : public Port {
public:
    using Instant = std::chrono::steady_clock::time_point;

    /// Never goes backwards: measures delays.
    [[nodiscard]] virtual Instant now() const = 0;

    /// The user's clock, in UTC with milliseconds: dates what happened.
    [[nodiscard]] virtual QDateTime wallTime() const = 0;
};

} // namespace nimbarrow
