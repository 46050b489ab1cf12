#pragma once

#include "platform/WorkQueue.h"

namespace nimbarrow {

/// Work queues on threads that end when they have been idle for a while. Queues are made after the
/// application object and destroyed before it.
class QtWorkQueues final : public WorkQueues {
public:
    [[nodiscard]] std::unique_ptr<WorkQueue> serial(const QString& label) override;
    [[nodiscard]] std::unique_ptr<WorkQueue> concurrent(const QString& label) override;
};

} // namespace nimbarrow
