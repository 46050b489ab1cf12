#pragma once

#include "platform/Port.h"

#include <chrono>
#include <functional>
#include <memory>

namespace nimbarrow {

/// A task that is still to run; dropping or cancelling the timer drops the task, also from inside the task.
class [[nodiscard]] Timer {
public:
    class Backend : public Port { };

    Timer() = default;
    explicit Timer(std::unique_ptr<Backend> backend)
        : m_backend(std::move(backend))
    {
    }

    /// A timer stays set after it has fired, until it is cancelled or replaced.
    [[nodiscard]] bool isSet() const { return m_backend != nullptr; }
    void cancel() { m_backend.reset(); }

private:
    std::unique_ptr<Backend> m_backend;
};

/// Runs tasks on the main loop, later.
class Scheduler : public Port {
public:
    using Task = std::function<void()>;
    using Duration = std::chrono::milliseconds;

    virtual Timer after(Duration delay, Task task) = 0;

    /// `tolerance` is how late each run may be, so that the system can bundle wake-ups.
    virtual Timer every(Duration period, Duration tolerance, Task task) = 0;
};

} // namespace nimbarrow
