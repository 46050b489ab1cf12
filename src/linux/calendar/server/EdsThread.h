#pragma once

#include <chrono>
#include <functional>
#include <memory>

namespace nimbarrow {

class EdsDatabase;
class EdsPatience;

/// The thread on which everything of the data server happens: its calls wait there, and its signals arrive
/// there, whatever event loop the program itself has.
class EdsThread {
public:
    using Job = std::function<void(EdsDatabase&, EdsPatience&)>;

    /// `changed` is called on the thread, possibly once more while this object is destroyed.
    explicit EdsThread(std::function<void()> changed);

    /// Ends what is in flight. A thread that hangs all the same is left to itself.
    ~EdsThread();
    EdsThread(const EdsThread&) = delete;
    EdsThread& operator=(const EdsThread&) = delete;

    /// Runs `job` and waits, at most until `patience` is at its end. False when the job has not ended by
    /// then; it may still run, so it owns all that it touches. On any thread but this one.
    [[nodiscard]] bool run(Job job, const std::shared_ptr<EdsPatience>& patience);

    /// Gives up what is in flight and all that comes. On any thread.
    void close();

private:
    struct Shared;
    std::shared_ptr<Shared> m_shared;
};

} // namespace nimbarrow
