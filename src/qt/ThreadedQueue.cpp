#include "qt/ThreadedQueue.h"

#include <QCoreApplication>
#include <QEvent>

#include <atomic>
#include <chrono>
#include <pthread.h>
#include <system_error>
#include <utility>

namespace nimbarrow {

namespace {

constexpr auto idleTime = std::chrono::seconds(2);
/// After which a thread is asked for again.
constexpr auto retryTime = std::chrono::milliseconds(500);

void nameThisThread(const QByteArray& name)
{
    // The kernel keeps 15 characters.
#ifdef __APPLE__
    pthread_setname_np(name.left(15).constData());
#else
    pthread_setname_np(pthread_self(), name.left(15).constData());
#endif
}

} // namespace

/// Made, read and destroyed on the main thread; the other thread only sends it.
class ThreadedQueue::Answer final : public QEvent {
public:
    Answer(QObject* receiver, Work done)
        : QEvent(QEvent::User)
        , m_receiver(receiver)
        , m_done(std::move(done))
    {
    }

    /// On the thread that has worked, before it posts this.
    void workIsOver() { m_isOver.store(true, std::memory_order_release); }

    void deliver() const
    {
        if (m_isOver.load(std::memory_order_acquire) && m_receiver)
            m_done();
    }

private:
    // Posting orders the work before the answer, but not where a thread sanitizer could see it.
    std::atomic<bool> m_isOver = false;
    QPointer<QObject> m_receiver;
    Work m_done;
};

class ThreadedQueue::Mailbox final : public QObject {
public:
    Mailbox(ThreadedQueue& queue, QObject* parent)
        : QObject(parent)
        , m_queue(&queue)
    {
    }

    bool event(QEvent* event) override
    {
        if (const auto* const answer = dynamic_cast<Answer*>(event)) {
            answer->deliver();
            return true;
        }
        return QObject::event(event);
    }

    void retryLater()
    {
        if (m_timer == 0)
            m_timer = startTimer(retryTime);
    }

    void close()
    {
        m_queue = nullptr;
        // Asked for at once, its end could overtake the answers that wait in the event queue.
        QMetaObject::invokeMethod(this, &QObject::deleteLater, Qt::QueuedConnection);
    }

protected:
    void timerEvent(QTimerEvent* /*event*/) override
    {
        killTimer(std::exchange(m_timer, 0));
        if (!m_queue)
            return;
        const Lock lock(m_queue->m_mutex);
        m_queue->startThread(lock);
    }

private:
    ThreadedQueue* m_queue;
    int m_timer = 0;
};

ThreadedQueue::ThreadedQueue(const QString& label, unsigned mostThreads)
    : m_name(label.section(u'.', -1).toUtf8())
    , m_mostThreads(mostThreads)
    , m_mailbox(new Mailbox(*this, QCoreApplication::instance()))
{
}

ThreadedQueue::~ThreadedQueue()
{
    std::list<std::thread> threads;
    {
        Lock lock(m_mutex);
        m_closing = true;
        if (m_threads.empty())
            runAllHere(lock);
        threads.splice(threads.end(), m_threads);
        threads.splice(threads.end(), m_ended);
    }
    m_wake.notify_all();
    for (auto& thread : threads)
        thread.join();
    if (m_mailbox)
        m_mailbox->close();
}

void ThreadedQueue::run(Work work, QObject* receiver, Work done)
{
    auto answer = done ? std::make_unique<Answer>(receiver, std::move(done)) : nullptr;
    ++m_handedIn;
    std::list<std::thread> ended;
    {
        const Lock lock(m_mutex);
        m_jobs.push_back({ std::move(work), std::move(answer) });
        ended.splice(ended.end(), m_ended);
        startThread(lock);
    }
    m_wake.notify_one();
    for (auto& thread : ended)
        thread.join();
}

bool ThreadedQueue::finish(std::chrono::milliseconds patience)
{
    const auto end = std::chrono::steady_clock::now() + patience;
    const auto isDone = [this] { return m_jobs.empty() && m_working == 0; };
    for (;;) {
        {
            Lock lock(m_mutex);
            startThread(lock);
            if (m_threads.empty())
                runAllHere(lock);
            if (!m_done.wait_until(lock, end, isDone))
                return false;
        }
        const auto handedIn = m_handedIn;
        QCoreApplication::sendPostedEvents(m_mailbox, QEvent::User);
        if (m_handedIn == handedIn)
            return true;
    }
}

void ThreadedQueue::startThread(const Lock& /*lock*/)
{
    if (m_jobs.size() <= m_idle || m_threads.size() >= m_mostThreads)
        return;
    const auto self = m_threads.emplace(m_threads.end());
    try {
        *self = std::thread(&ThreadedQueue::runThread, this, self);
    } catch (const std::system_error&) {
        m_threads.erase(self);
        // Those that there are take the work as they come to it.
        if (m_threads.empty() && m_mailbox)
            m_mailbox->retryLater();
    }
}

void ThreadedQueue::runThread(std::list<std::thread>::iterator self)
{
    nameThisThread(m_name);
    Lock lock(m_mutex);
    for (;;) {
        if (!m_jobs.empty()) {
            runFirst(lock);
            continue;
        }
        if (m_closing)
            return;
        ++m_idle;
        const bool woken = m_wake.wait_for(lock, idleTime, [this] { return m_closing || !m_jobs.empty(); });
        --m_idle;
        if (!woken) {
            m_ended.splice(m_ended.end(), m_threads, self);
            return;
        }
    }
}

void ThreadedQueue::runFirst(Lock& lock)
{
    auto job = std::move(m_jobs.front());
    m_jobs.pop_front();
    ++m_working;
    lock.unlock();

    job.work();
    // What the work held goes on this thread, and before the answer tells that it is over.
    job.work = {};
    if (job.answer) {
        job.answer->workIsOver();
        QCoreApplication::postEvent(m_mailbox, job.answer.release());
    }
    lock.lock();
    --m_working;
    m_done.notify_all();
}

void ThreadedQueue::runAllHere(Lock& lock)
{
    while (!m_jobs.empty())
        runFirst(lock);
}

} // namespace nimbarrow
