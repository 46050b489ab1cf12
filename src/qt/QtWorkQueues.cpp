#include "qt/QtWorkQueues.h"

#include "qt/ThreadedQueue.h"

#include <algorithm>

namespace nimbarrow {

std::unique_ptr<WorkQueue> QtWorkQueues::serial(const QString& label)
{
    return std::make_unique<ThreadedQueue>(label, 1);
}

std::unique_ptr<WorkQueue> QtWorkQueues::concurrent(const QString& label)
{
    return std::make_unique<ThreadedQueue>(label, std::max(1U, std::thread::hardware_concurrency()));
}

} // namespace nimbarrow
