#pragma once

#include "platform/WorkQueue.h"
#include "qt/ThreadedQueue.h"

#include <algorithm>
#include <thread>

namespace nimbarrow {

/// Work queues on threads that end when they have been idle for a while. Queues are made after the
/// application object and destroyed before it.
class QtWorkQueues final : public WorkQueues {
public:
    [[nodiscard]] std::unique_ptr<WorkQueue> serial(const QString& label) override
    {
        return std::make_unique<ThreadedQueue>(label, 1);
    }

    [[nodiscard]] std::unique_ptr<WorkQueue> concurrent(const QString& label) override
    {
        return std::make_unique<ThreadedQueue>(label, std::max(1U, std::thread::hardware_concurrency()));
    }
};

} // namespace nimbarrow
