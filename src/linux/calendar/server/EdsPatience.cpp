#include "linux/calendar/server/EdsPatience.h"

#include <algorithm>

namespace nimbarrow {

EdsPatience::EdsPatience(std::chrono::milliseconds perCall, std::chrono::milliseconds forAll)
    : m_perCall(perCall)
    , m_end(Clock::now() + forAll)
    , m_callEnd(m_end)
{
}

GCancellable* EdsPatience::nextCall()
{
    const std::lock_guard lock(m_mutex);
    m_call.reset(g_cancellable_new());
    m_callEnd = Clock::now() + m_perCall;
    if (m_isGivenUp)
        g_cancellable_cancel(m_call.get());
    m_changed.notify_all();
    return m_call.get();
}

int EdsPatience::endedCalls() const
{
    const std::lock_guard lock(m_mutex);
    return m_endedCalls;
}

void EdsPatience::finish()
{
    const std::lock_guard lock(m_mutex);
    m_isFinished = true;
    m_changed.notify_all();
}

bool EdsPatience::isGivenUp() const
{
    const std::lock_guard lock(m_mutex);
    return m_isGivenUp;
}

void EdsPatience::giveUp()
{
    Reference<GCancellable> call;
    {
        const std::lock_guard lock(m_mutex);
        m_isGivenUp = true;
        ++m_endedCalls;
        if (m_call)
            call = referenceTo(m_call.get());
        m_changed.notify_all();
    }
    // Not under the lock: cancelling runs what listens to it.
    if (call)
        g_cancellable_cancel(call.get());
}

bool EdsPatience::wait()
{
    std::unique_lock lock(m_mutex);
    while (!m_isFinished && !m_isGivenUp) {
        m_changed.wait_until(lock, std::min(m_callEnd, m_end));
        const auto now = Clock::now();
        if (m_isFinished || m_isGivenUp)
            break;
        if (now >= m_end) {
            lock.unlock();
            giveUp();
            lock.lock();
        } else if (m_call && now >= m_callEnd) {
            m_callEnd = m_end;
            ++m_endedCalls;
            const auto call = referenceTo(m_call.get());
            lock.unlock();
            g_cancellable_cancel(call.get());
            lock.lock();
        }
    }
    return m_isFinished;
}

} // namespace nimbarrow
