#include "linux/power/BusInhibition.h"

#include <QDBusPendingCallWatcher>

#include <limits>

using namespace Qt::StringLiterals;

namespace nimbarrow {

namespace {

// For ever: after a question that was given up the service might still grant it, and nobody could release
// that. A service that ends without an answer is reported by the bus.
constexpr int patience = std::numeric_limits<int>::max();

} // namespace

BusInhibition::BusInhibition(std::vector<InhibitionService> services)
    : m_services(std::move(services))
{
    for (auto& service : m_services) {
        // Without a sender's name: with one, Qt would wait for the bus to tell who that is.
        service.bus.connect({}, u"/org/freedesktop/DBus"_s, u"org.freedesktop.DBus"_s, u"NameOwnerChanged"_s,
            { service.name }, u"sss"_s, this, SLOT(followService(QString, QString, QString)));
    }
}

BusInhibition::~BusInhibition()
{
    m_holders = 0;
    settle();
}

void BusInhibition::hold(const QString& reason)
{
    ++m_holders;
    if (m_asked || m_grant)
        return;
    m_reason = reason;
    ask(0);
}

void BusInhibition::letGo()
{
    --m_holders;
    QMetaObject::invokeMethod(this, &BusInhibition::settle, Qt::QueuedConnection);
}

void BusInhibition::ask(std::size_t service)
{
    m_asked = service;
    m_newOwner.reset();
    const auto& asked = m_services[service];
    auto* const watcher
        = new QDBusPendingCallWatcher(asked.bus.asyncCall(asked.question(m_reason), patience), this);
    connect(watcher, &QDBusPendingCallWatcher::finished, this, [this, watcher, service] {
        watcher->deleteLater();
        take(service, watcher->reply());
    });
}

void BusInhibition::take(std::size_t service, const QDBusMessage& answer)
{
    m_asked.reset();
    // The answer is that of a process which no longer serves the name, or of the bus in its place.
    if (m_newOwner && *m_newOwner != answer.service()) {
        if (m_newOwner->isEmpty() && !m_grant)
            refuse(service);
        else if (!m_newOwner->isEmpty() && m_holders > 0)
            ask(service);
        else
            settle();
        return;
    }
    auto grant = answer.type() == QDBusMessage::ReplyMessage ? m_services[service].take(answer) : nullptr;
    if (!grant) {
        refuse(service);
        return;
    }
    // What a restarted service had given before goes only now, so that there is no gap.
    m_grant = std::move(grant);
    m_grantor = service;
    settle();
}

void BusInhibition::refuse(std::size_t service)
{
    if (m_holders > 0 && service + 1 < m_services.size()) {
        ask(service + 1);
        return;
    }
    m_grant.reset();
    if (m_holders > 0)
        Q_EMIT refused();
}

void BusInhibition::followService(const QString& name, const QString& /*oldOwner*/, const QString& newOwner)
{
    if (m_asked) {
        if (name == m_services[*m_asked].name)
            m_newOwner = newOwner;
        return;
    }
    // A service that has ended may be back soon.
    if (!m_grant || name != m_services[m_grantor].name)
        return;
    if (!newOwner.isEmpty() && m_holders > 0)
        ask(m_grantor);
}

void BusInhibition::settle()
{
    // While a question is on its way, its answer decides.
    if (m_holders > 0 || m_asked)
        return;
    if (m_grant)
        m_grant->release();
    m_grant.reset();
}

} // namespace nimbarrow
