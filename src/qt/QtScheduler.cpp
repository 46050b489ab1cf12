#include "qt/QtScheduler.h"

#include <QCoreApplication>
#include <QPointer>
#include <QTimer>

#include <algorithm>
#include <limits>
#include <utility>

namespace nimbarrow {

namespace {

class LoopTimer final : public Timer::Backend {
public:
    LoopTimer(Scheduler::Duration interval, bool once, Qt::TimerType type, Scheduler::Task task)
        : m_timer(new QTimer(QCoreApplication::instance()))
    {
        m_timer->setSingleShot(once);
        m_timer->setTimerType(type);
        QObject::connect(m_timer, &QTimer::timeout, m_timer, std::move(task));
        // QTimer counts in int.
        const auto longest = Scheduler::Duration(std::numeric_limits<int>::max());
        m_timer->start(std::clamp(interval, Scheduler::Duration::zero(), longest));
    }

    ~LoopTimer() override
    {
        if (!m_timer)
            return;
        // Perhaps this is inside the task: the QTimer may go only when its signal has returned.
        m_timer->stop();
        m_timer->disconnect();
        m_timer->deleteLater();
    }

private:
    QPointer<QTimer> m_timer;
};

} // namespace

Timer QtScheduler::after(Duration delay, Task task)
{
    return Timer(std::make_unique<LoopTimer>(delay, true, Qt::PreciseTimer, std::move(task)));
}

Timer QtScheduler::every(Duration period, Duration tolerance, Task task)
{
    const auto type = tolerance > Duration::zero() ? Qt::CoarseTimer : Qt::PreciseTimer;
    return Timer(std::make_unique<LoopTimer>(period, false, type, std::move(task)));
}

} // namespace nimbarrow
