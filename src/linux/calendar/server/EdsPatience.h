#pragma once

#include "linux/calendar/server/GObjects.h"

#include <chrono>
#include <condition_variable>
#include <gio/gio.h>
#include <mutex>

namespace nimbarrow {

/// How long one job at the data server may take: who waits for the job ends the call that is in flight when
/// the call or the whole job takes too long. Thread-safe.
class EdsPatience {
public:
    using Clock = std::chrono::steady_clock;

    /// Each call of the job may take `perCall`, the job `forAll`.
    EdsPatience(std::chrono::milliseconds perCall, std::chrono::milliseconds forAll);

    /// For the job: the token of its next call, valid until the one after. Already cancelled when the job is
    /// given up.
    [[nodiscard]] GCancellable* nextCall();

    /// For the job: how many of its calls have been ended so far. Some of the library's do not tell.
    [[nodiscard]] int endedCalls() const;

    /// For the job: it has ended.
    void finish();

    [[nodiscard]] bool isGivenUp() const;

    /// Ends the call in flight and the waiting.
    void giveUp();

    /// Returns when the job has ended (true) or is given up (false).
    [[nodiscard]] bool wait();

private:
    const std::chrono::milliseconds m_perCall;
    const Clock::time_point m_end;
    mutable std::mutex m_mutex;
    std::condition_variable m_changed;
    Reference<GCancellable> m_call;
    Clock::time_point m_callEnd;
    int m_endedCalls = 0;
    bool m_isFinished = false;
    bool m_isGivenUp = false;
};

} // namespace nimbarrow
