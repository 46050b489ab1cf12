#include "linux/pasteboard/PasteboardThread.h"

#include <algorithm>
#include <csignal>
#include <sys/eventfd.h>
#include <unistd.h>
#include <utility>

namespace nimbarrow {

namespace {

constexpr auto handOverPatience = std::chrono::seconds(1);

constexpr auto claimPatience = std::chrono::milliseconds(250);

} // namespace

int Selection::waitUntil(PasteboardInstant deadline)
{
    if (deadline == PasteboardInstant::max())
        return -1;
    const auto left
        = std::chrono::ceil<std::chrono::milliseconds>(deadline - PasteboardInstant::clock::now());
    return static_cast<int>(std::clamp<qint64>(left.count(), 0, 3'600'000));
}

PasteboardThread::PasteboardThread(std::unique_ptr<Selection> selection)
    : m_selection(std::move(selection))
{
    if (!m_selection->works())
        return;
    m_wakeup = eventfd(0, EFD_CLOEXEC | EFD_NONBLOCK);
    if (m_wakeup < 0)
        return;
    m_works = true;
    m_thread = std::thread([this] { run(); });
}

PasteboardThread::~PasteboardThread()
{
    m_stop = true;
    if (m_thread.joinable()) {
        wake();
        m_thread.join();
    }
    if (m_wakeup >= 0)
        close(m_wakeup);
}

void PasteboardThread::wake() const
{
    const quint64 one = 1;
    // A full counter wakes as well, so nothing is lost when this fails.
    [[maybe_unused]] const auto written = ::write(m_wakeup, &one, sizeof one);
}

void PasteboardThread::write(Selection::Write write)
{
    if (!m_works)
        return;
    std::unique_lock lock(m_mutex);
    m_writes.push_back(std::move(write));
    const auto turn = ++m_writesGiven;
    wake();
    // Only the windowing system stands behind this wait: a paste keystroke often follows at once. An image
    // that is still being made is not waited for: the selection is claimed then, and who pastes is answered
    // after it, with the newest write.
    m_claimed.wait_for(
        lock, claimPatience, [this, turn] { return m_writesClaimed >= turn || m_drawing || !m_works; });
}

bool PasteboardThread::post(std::function<void()> work)
{
    const std::scoped_lock lock(m_mutex);
    if (!m_works)
        return false;
    m_posted.push_back(std::move(work));
    wake();
    return true;
}

void PasteboardThread::handOver()
{
    std::unique_lock lock(m_mutex);
    if (!m_works)
        return;
    m_handOver = HandOver::Wanted;
    wake();
    m_handedOver.wait_for(
        lock, handOverPatience, [this] { return m_handOver == HandOver::None || !m_works; });
}

void PasteboardThread::run()
{
    pthread_setname_np(pthread_self(), "pasteboard");
    // Who pastes may go in the middle of it; writing to it fails then, and no more than that.
    sigset_t brokenPipe {};
    sigemptyset(&brokenPipe);
    sigaddset(&brokenPipe, SIGPIPE);
    pthread_sigmask(SIG_BLOCK, &brokenPipe, nullptr);
    while (!m_stop && m_selection->works()) {
        quint64 count = 0;
        [[maybe_unused]] const auto emptied = read(m_wakeup, &count, sizeof count);
        runWrites();
        serveHandOver();
        runPosted();
        m_selection->step(m_wakeup);
    }
    {
        const std::scoped_lock lock(m_mutex);
        m_works = false;
    }
    m_claimed.notify_all();
    m_handedOver.notify_all();
}

void PasteboardThread::runPosted()
{
    std::deque<std::function<void()>> posted;
    {
        const std::scoped_lock lock(m_mutex);
        posted.swap(m_posted);
    }
    for (const auto& work : posted)
        work();
}

void PasteboardThread::runWrites()
{
    std::unique_lock lock(m_mutex);
    while (!m_writes.empty() && !m_stop) {
        const auto writes = std::exchange(m_writes, {});
        lock.unlock();
        m_selection->claim(writes);
        lock.lock();
        m_writesClaimed += static_cast<int>(writes.size());
        // The image of a write that another one has replaced by now is nobody's business.
        m_drawing = m_writes.empty() && writes.back().png;
        lock.unlock();
        m_claimed.notify_all();
        if (m_drawing)
            m_selection->addImage(writes.back().png());
        lock.lock();
        m_drawing = false;
    }
}

void PasteboardThread::serveHandOver()
{
    const std::scoped_lock lock(m_mutex);
    if (m_handOver == HandOver::Wanted) {
        m_selection->save();
        m_handOver = HandOver::Begun;
    }
    if (m_handOver == HandOver::Begun && !m_selection->isGiving()) {
        m_handOver = HandOver::None;
        m_handedOver.notify_all();
    }
}

} // namespace nimbarrow
