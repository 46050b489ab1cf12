#pragma once

#include "linux/power/InhibitionService.h"
#include "platform/Scheduler.h"

#include <QObject>

#include <cstddef>
#include <optional>
#include <vector>

namespace nimbarrow {

/// At most one inhibition, from the first of some services that grants it, for as long as somebody holds it.
/// Beside it, where the first service does not grant it, what the session itself can do.
///
/// A service that restarts is asked again. Only the service that granted it is waited for: another one would
/// make two of it once the first is back. One that does not answer within 5 s counts as refusing.
class BusInhibition final : public QObject {
    Q_OBJECT

public:
    /// Null where it is not in its power.
    using Substitute = std::function<std::unique_ptr<Port>()>;

    /// The services in the order in which they are asked. The scheduler outlives the inhibition.
    BusInhibition(std::vector<InhibitionService> services, Substitute substitute, Scheduler& scheduler);
    ~BusInhibition() override;

    /// Asks in the background if nobody held it before. The first reason stays.
    void hold(const QString& reason);
    /// Takes effect when the main loop turns, so that the next one to hold it can take it over.
    void letGo();

Q_SIGNALS:
    /// No service grants it. Whoever holds it may let go now.
    void refused();

private Q_SLOTS:
    void followService(const QString& name, const QString& oldOwner, const QString& newOwner);

private:
    void ask(std::size_t service);
    void accept(std::size_t service, const QDBusMessage& answer);
    void refuse(std::size_t service);
    void releaseUnlessHeld();

    std::vector<InhibitionService> m_services;
    Substitute m_substitute;
    Scheduler& m_scheduler;
    QString m_reason;
    int m_holders = 0;

    /// The service whose answer is on its way.
    std::optional<std::size_t> m_asked;
    /// Until it is no longer waited for.
    Timer m_timeout;
    /// When its owner changed since it was asked: who has the question, and who owns it now; empty when it is
    /// gone.
    QString m_firstOwner;
    std::optional<QString> m_newOwner;

    /// Stays while the service that gave it is away.
    std::unique_ptr<InhibitionService::Grant> m_grant;
    std::size_t m_grantor = 0;
    /// What the session does in the place of the first service.
    std::unique_ptr<Port> m_substituted;
};

} // namespace nimbarrow
