#pragma once

#include "platform/WorkQueue.h"

#include <QList>
#include <QPointer>

#include <utility>

namespace nimbarrow {

/// Work queues whose work runs on the test's thread, when the test says so and in the order it was handed in.
class ManualQueues final : public WorkQueues {
public:
    [[nodiscard]] std::unique_ptr<WorkQueue> serial(const QString& /*label*/) override
    {
        return std::make_unique<Queue>(*this);
    }
    [[nodiscard]] std::unique_ptr<WorkQueue> concurrent(const QString& /*label*/) override
    {
        return std::make_unique<Queue>(*this);
    }

    /// Runs one piece of work and hands back its answer and those that waited. False when there was nothing
    /// of it.
    bool runNext()
    {
        auto hasRun = work();
        while (answer())
            hasRun = true;
        return hasRun;
    }

    /// Runs one piece of work, whose answer is still on its way. False when there was none.
    bool work()
    {
        if (m_jobs->isEmpty())
            return false;
        const auto job = m_jobs->takeFirst();
        job.work();
        if (job.done)
            m_answers << job;
        return true;
    }

    /// Hands one answer back. False when there was none.
    bool answer()
    {
        if (m_answers.isEmpty())
            return false;
        const auto job = m_answers.takeFirst();
        if (job.receiver)
            job.done();
        return true;
    }

    /// Until nothing is left, the work that answers ask for included.
    void runAll()
    {
        while (runNext()) { }
    }

    [[nodiscard]] qsizetype waiting() const { return m_jobs->size(); }
    [[nodiscard]] qsizetype answersWaiting() const { return m_answers.size(); }

private:
    struct Job {
        const WorkQueue* queue;
        WorkQueue::Work work;
        QPointer<QObject> receiver;
        WorkQueue::Work done;
    };
    using Jobs = QList<Job>;

    class Queue final : public WorkQueue {
    public:
        explicit Queue(ManualQueues& queues)
            : m_queues(queues)
            , m_jobs(queues.m_jobs)
        {
        }
        ~Queue() override
        {
            // What was handed in runs in any case; nobody waits for the answer any more.
            for (const auto& job : std::exchange(*m_jobs, {})) {
                if (job.queue == this)
                    job.work();
                else
                    *m_jobs << job;
            }
        }

        using WorkQueue::run;
        void run(Work work, QObject* receiver, Work done) override
        {
            *m_jobs << Job { this, std::move(work), receiver, std::move(done) };
        }

        bool finish(std::chrono::milliseconds /*patience*/) override
        {
            m_queues.runAll();
            return true;
        }

    private:
        ManualQueues& m_queues;
        std::shared_ptr<Jobs> m_jobs;
    };

    std::shared_ptr<Jobs> m_jobs = std::make_shared<Jobs>();
    Jobs m_answers;
};

} // namespace nimbarrow
