#pragma once

#include "platform/Clock.h"

namespace nimbarrow {

/// The computer's clocks.
class SystemClock final : public Clock {
public:
    [[nodiscard]] Instant now() const override { return std::chrono::steady_clock::now(); }

    [[nodiscard]] QDateTime wallTime() const override { return QDateTime::currentDateTimeUtc(); }
};

} // namespace nimbarrow
