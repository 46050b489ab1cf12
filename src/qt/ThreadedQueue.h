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

/// Runs work on up to a number of threads, which are started when needed and end when idle.
class ThreadedQueue final : public WorkQueue {
public:
    /// The threads are named after the last part of the dotted `label`.
    ThreadedQueue(const QString& label, unsigned mostThreads);
    ~ThreadedQueue() override;

    using WorkQueue::run;
    void run(Work work, QObject* receiver, Work done) override;

private:
    class Answer;
    struct Job {
        Work work;
        std::unique_ptr<Answer> answer;
    };
    class Mailbox;

    void runThread(std::list<std::thread>::iterator self);

    const QByteArray m_name;
    const unsigned m_mostThreads;
    /// Belongs to the application object, so that answers arrive also after the queue is gone.
    QPointer<Mailbox> m_mailbox;

    std::mutex m_mutex;
    std::condition_variable m_wake;
    std::deque<Job> m_jobs;
    std::list<std::thread> m_threads;
    /// Threads that have ended and only wait to be joined.
    std::list<std::thread> m_ended;
    unsigned m_idle = 0;
    bool m_closing = false;
};

} // namespace nimbarrow
