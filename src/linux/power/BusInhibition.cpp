#include "linux/power/BusInhibition.h"

#include "linux/session/BusCalls.h"

#include <limits>

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace nimbarrow {

namespace {

// For ever: after a question that was given up the service might still grant it, and nobody could release
// that. A service that ends without an answer is reported by the bus.
constexpr int noTimeout = std::numeric_limits<int>::max();
// So long it counts as not having refused.
constexpr auto answerTimeout = 5s;

std::unique_ptr<InhibitionService::Grant> grantOf(
    const InhibitionService& service, const QDBusMessage& answer)
{
    return answer.type() == QDBusMessage::ReplyMessage ? service.grant(answer) : nullptr;
}

} // namespace

BusInhibition::BusInhibition(
    std::vector<InhibitionService> services, Substitute substitute, Scheduler& scheduler)
    : m_services(std::move(services))
    , m_substitute(std::move(substitute))
    , m_scheduler(scheduler)
{
    for (const auto& service : m_services)
        followBusOwner(service.bus, service.name, this, SLOT(followService(QString, QString, QString)));
}

BusInhibition::~BusInhibition()
{
    m_holders = 0;
    m_asked.reset();
    releaseUnlessHeld();
}

void BusInhibition::hold(const QString& reason)
{
    ++m_holders;
    if (m_asked || m_grant || m_substituted)
        return;
    m_reason = reason;
    // Whoever holds it is told later in any case.
    if (m_services.empty())
        QMetaObject::invokeMethod(
            this, [this] { refuse(0); }, Qt::QueuedConnection);
    else
        ask(0);
}

void BusInhibition::letGo()
{
    --m_holders;
    QMetaObject::invokeMethod(this, &BusInhibition::releaseUnlessHeld, Qt::QueuedConnection);
}

void BusInhibition::ask(std::size_t service)
{
    m_asked = service;
    m_newOwner.reset();
    const auto& asked = m_services[service];
    const auto isLate = std::make_shared<bool>(false);
    m_timeout = m_scheduler.after(answerTimeout, [this, service, isLate] {
        *isLate = true;
        m_asked.reset();
        refuse(service);
    });
    const auto question = asked.question(m_reason);
    const auto answered = [this, service, isLate](const QDBusMessage& answer) {
        if (!*isLate)
            accept(service, answer);
        else if (auto grant = grantOf(m_services[service], answer))
            grant->release();
    };
    callBus(asked.bus, question, this, answered, noTimeout);
}

void BusInhibition::accept(std::size_t service, const QDBusMessage& answer)
{
    m_timeout.cancel();
    m_asked.reset();
    // The answer is that of a process which no longer serves the name, or of the bus in its place.
    if (m_newOwner && *m_newOwner != m_firstOwner) {
        if (m_newOwner->isEmpty() && !m_grant)
            refuse(service);
        else if (!m_newOwner->isEmpty() && m_holders > 0)
            ask(service);
        else
            releaseUnlessHeld();
        return;
    }
    auto grant = grantOf(m_services[service], answer);
    if (!grant) {
        refuse(service);
        return;
    }
    // What a restarted service had given before goes only now, so that there is no gap.
    m_grant = std::move(grant);
    m_grantor = service;
    releaseUnlessHeld();
}

void BusInhibition::refuse(std::size_t service)
{
    if (m_holders > 0 && service == 0 && m_substitute && !m_substituted)
        m_substituted = m_substitute();
    if (m_holders > 0 && service + 1 < m_services.size()) {
        ask(service + 1);
        return;
    }
    m_grant.reset();
    if (m_holders > 0 && !m_substituted)
        Q_EMIT refused();
    else
        releaseUnlessHeld();
}

void BusInhibition::followService(const QString& name, const QString& oldOwner, const QString& newOwner)
{
    if (m_asked) {
        if (name != m_services[*m_asked].name)
            return;
        // Without an owner it waited for the one that the bus has started.
        if (!m_newOwner)
            m_firstOwner = oldOwner.isEmpty() ? newOwner : oldOwner;
        m_newOwner = newOwner;
        return;
    }
    // A service that has ended may be back soon.
    if (!m_grant || name != m_services[m_grantor].name)
        return;
    if (!newOwner.isEmpty() && m_holders > 0)
        ask(m_grantor);
}

void BusInhibition::releaseUnlessHeld()
{
    // While a question is on its way, its answer decides.
    if (m_holders > 0 || m_asked)
        return;
    if (m_grant)
        m_grant->release();
    m_grant.reset();
    m_substituted.reset();
}

} // namespace nimbarrow
