#include "linux/calendar/server/EdsCalendarStore.h"

#include "linux/calendar/server/EdsDatabase.h"
#include "linux/calendar/server/EdsPatience.h"
#include "linux/calendar/server/EdsThread.h"

#include <QCoreApplication>

using namespace Qt::StringLiterals;

namespace nimbarrow {

EdsCalendarStore::EdsCalendarStore()
    : EdsCalendarStore(Patience())
{
}

EdsCalendarStore::EdsCalendarStore(Patience patience)
    : m_patience(patience)
    , m_relay(std::make_shared<Relay>())
    , m_waiting(u"calendar-create"_s, 1)
{
    m_relay->store = this;
    m_thread = std::make_unique<EdsThread>([relay = m_relay] {
        // A synchronising account changes hundreds of events at once; one word is enough for them.
        if (relay->isPending.exchange(true))
            return;
        const std::lock_guard lock(relay->mutex);
        if (relay->store)
            QMetaObject::invokeMethod(relay->store, &EdsCalendarStore::tellChanged, Qt::QueuedConnection);
    });
    // Who waits for an answer then must not keep the program from ending.
    connect(QCoreApplication::instance(), &QCoreApplication::aboutToQuit, this, &EdsCalendarStore::close);
}

EdsCalendarStore::~EdsCalendarStore()
{
    {
        const std::lock_guard lock(m_relay->mutex);
        m_relay->store = nullptr;
    }
    m_thread->close();
}

void EdsCalendarStore::close()
{
    m_thread->close();
}

void EdsCalendarStore::tellChanged()
{
    // Before telling, so that what changes meanwhile is told again.
    m_relay->isPending = false;
    Q_EMIT changed();
}

std::optional<QList<CalendarEvent>> EdsCalendarStore::events(const QDateTime& start, const QDateTime& end)
{
    auto events = std::make_shared<std::optional<QList<CalendarEvent>>>();
    const bool answered
        = m_thread->run([events, start, end](EdsDatabase& database,
                            EdsPatience& patience) { *events = database.events(start, end, patience); },
            std::make_shared<EdsPatience>(m_patience.call, m_patience.question));
    if (!answered)
        return {};
    return *events;
}

void EdsCalendarStore::create(const QString& title, const QDateTime& start, const QDateTime& end,
    std::function<void(const Created&)> done)
{
    auto created = std::make_shared<Created>();
    m_waiting.run(
        [this, created, title, start, end] {
            auto answer = std::make_shared<Created>();
            const bool answered = m_thread->run(
                [answer, title, start, end](EdsDatabase& database, EdsPatience& patience) {
                    *answer = database.create(title, start, end, patience);
                },
                std::make_shared<EdsPatience>(m_patience.call, m_patience.question));
            *created = answered
                ? *answer
                : Created { CreateError::Failed, u"The calendar service does not answer"_s, {} };
        },
        this, [created, done = std::move(done)] { done(*created); });
}

} // namespace nimbarrow
