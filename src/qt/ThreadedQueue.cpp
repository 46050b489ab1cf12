#include "qt/ThreadedQueue.h"

#include <QCoreApplication>
#include <QEvent>

#include <atomic>
#include <chrono>
#include <pthread.h>
#include <utility>

namespace nimbarrow {

namespace {

constexpr auto idleTime = std::chrono::seconds(2);

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
    using QObject::QObject;

    bool event(QEvent* event) override
    {
        if (const auto* const answer = dynamic_cast<Answer*>(event)) {
            answer->deliver();
            return true;
        }
        return QObject::event(event);
    }
};

ThreadedQueue::ThreadedQueue(const QString& label, unsigned mostThreads)
    : m_name(label.section(u'.', -1).toUtf8())
    , m_mostThreads(mostThreads)
    , m_mailbox(new Mailbox(QCoreApplication::instance()))
{
}

ThreadedQueue::~ThreadedQueue()
{
    std::list<std::thread> threads;
    {
        const std::lock_guard lock(m_mutex);
        m_closing = true;
        threads.splice(threads.end(), m_threads);
        threads.splice(threads.end(), m_ended);
    }
    m_wake.notify_all();
    for (auto& thread : threads)
        thread.join();
    // Behind the answers that wait in the event queue.
    if (m_mailbox)
        m_mailbox->deleteLater();
}

void ThreadedQueue::run(Work work, QObject* receiver, Work done)
{
    auto answer = done ? std::make_unique<Answer>(receiver, std::move(done)) : nullptr;
    std::list<std::thread> ended;
    {
        const std::lock_guard lock(m_mutex);
        m_jobs.push_back({ std::move(work), std::move(answer) });
        ended.splice(ended.end(), m_ended);
        if (m_jobs.size() > m_idle && m_threads.size() < m_mostThreads) {
            const auto self = m_threads.emplace(m_threads.end());
            *self = std::thread(&ThreadedQueue::runThread, this, self);
        }
    }
    m_wake.notify_one();
    for (auto& thread : ended)
        thread.join();
}

void ThreadedQueue::runThread(std::list<std::thread>::iterator self)
{
    nameThisThread(m_name);
    std::unique_lock lock(m_mutex);
    for (;;) {
        if (m_jobs.empty()) {
            if (m_closing)
                return;
            ++m_idle;
            const bool woken
                = m_wake.wait_for(lock, idleTime, [this] { return m_closing || !m_jobs.empty(); });
            --m_idle;
            if (!woken) {
                m_ended.splice(m_ended.end(), m_threads, self);
                return;
            }
            continue;
        }
        auto job = std::move(m_jobs.front());
        m_jobs.pop_front();
        lock.unlock();

        job.work();
        // What the work held goes on this thread, and before the answer tells that it is over.
        job.work = {};
        if (job.answer) {
            job.answer->workIsOver();
            QCoreApplication::postEvent(m_mailbox, job.answer.release());
        }
        lock.lock();
    }
}

} // namespace nimbarrow
