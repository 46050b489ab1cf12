#pragma once

#include "platform/Port.h"

#include <QString>

#include <chrono>
#include <functional>
#include <memory>

class QObject;

namespace nimbarrow {

/// Runs work off the main loop. What has been handed in runs, also when the queue is destroyed meanwhile:
/// the destructor waits for it.
class WorkQueue : public Port {
public:
    using Work = std::function<void()>;

    /// Any thread runs `work`; then the main loop runs `done`, unless `receiver` is gone by then.
    /// Called on the main thread.
    virtual void run(Work work, QObject* receiver, Work done) = 0;

    /// Waits until all that was handed in has run and is answered, with what the answers hand in: for the end
    /// of the program alone. False when there was no end to it in time. Main thread; the answers leave the
    /// queue alone.
    [[nodiscard]] virtual bool finish(std::chrono::milliseconds patience) = 0;

    void run(Work work) { run(std::move(work), nullptr, {}); }
};

/// Makes work queues.
class WorkQueues : public Port {
public:
    /// One piece of work at a time, in the order given. `label` names the thread for people who debug.
    [[nodiscard]] virtual std::unique_ptr<WorkQueue> serial(const QString& label) = 0;

    /// Several pieces of work at once, in no order.
    [[nodiscard]] virtual std::unique_ptr<WorkQueue> concurrent(const QString& label) = 0;
};

} // namespace nimbarrow
