#pragma once

#include "platform/WorkQueue.h"

#include <QByteArray>
#include <QObject>
#include <QPointer>

#include <condition_variable>
#include <deque>
#include <list>
#include <memory>
#include <mutex>
#include <thread>

namespace nimbarrow {

/// Runs work on up to a number of threads, which are started when needed and end when idle. Where the system
/// gives it no thread, the work stays and is tried again.
///
/// Not a QThreadPool: that one takes a thread which could not be started for one that works, so its work
/// never runs and its end is waited for without an end; and the thread sanitizer, to which Qt's own locks are
/// unknown, sees a race at each of its hand-overs.
class ThreadedQueue final : public WorkQueue {
public:
    /// The threads are named after the last part of the dotted `label`.
    ThreadedQueue(const QString& label, unsigned mostThreads);
    ~ThreadedQueue() override;

    using WorkQueue::run;
    void run(Work work, QObject* receiver, Work done) override;
    [[nodiscard]] bool finish(std::chrono::milliseconds patience) override;

private:
    class Answer;
    struct Job {
        Work work;
        std::unique_ptr<Answer> answer;
    };
    class Mailbox;

    using Lock = std::unique_lock<std::mutex>;

    /// Where there is work for one more.
    void startThread(const Lock& lock);
    void runThread(std::list<std::thread>::iterator self);
    void runFirst(Lock& lock);
    void runAllHere(Lock& lock);

    const QByteArray m_name;
    const unsigned m_mostThreads;
    /// Belongs to the application object, so that answers arrive also after the queue is gone.
    QPointer<Mailbox> m_mailbox;
    /// How often. Of the main thread alone.
    quint64 m_handedIn = 0;

    std::mutex m_mutex;
    std::condition_variable m_wake;
    std::condition_variable m_done;
    std::deque<Job> m_jobs;
    std::list<std::thread> m_threads;
    /// Threads that have ended and only wait to be joined.
    std::list<std::thread> m_ended;
    unsigned m_idle = 0;
    unsigned m_working = 0;
    bool m_closing = false;
};

} // namespace nimbarrow
