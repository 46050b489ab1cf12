#pragma once

#include "platform/Clock.h"

namespace nimbarrow {

/// The computer's clocks.
class SystemClock final : public Clock {
public:
    [[nodiscard]] Instant now() const override;
    [[nodiscard]] QDateTime wallTime() const override;
};

} // namespace nimbarrow
