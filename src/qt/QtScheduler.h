#pragma once

#include "platform/Scheduler.h"

namespace nimbarrow {

/// Timers of the Qt event loop; needs the application object.
class QtScheduler final : public Scheduler {
public:
    Timer after(Duration delay, Task task) override;
    Timer every(Duration period, Duration tolerance, Task task) override;
};

} // namespace nimbarrow
