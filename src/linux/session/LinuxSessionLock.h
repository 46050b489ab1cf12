#pragma once

#include "platform/SessionLock.h"

#include <QDBusConnection>
#include <QDBusMessage>
#include <QHash>
#include <QPointer>
#include <QSet>
#include <QVariantMap>

#include <optional>

namespace nimbarrow {

/// Locked for as long as anybody says so: the desktop's screen saver, the login manager, or what the display
/// shows.
class LinuxSessionLock final : public SessionLock {
    Q_OBJECT

public:
    /// Asks in the background; a bus that is absent says nothing.
    LinuxSessionLock(
        const std::optional<QDBusConnection>& session, const std::optional<QDBusConnection>& system);

    /// From now on what the display shows counts, until it dies.
    void follow(const SessionLock& display);

    [[nodiscard]] bool isLocked() const override { return m_isLocked; }

private Q_SLOTS:
    void followOwner(const QString& service, const QString& oldOwner, const QString& newOwner);
    void followScreenSaver(bool active, const QDBusMessage& signal);
    void followLoginSession(
        const QString& interface, const QVariantMap& changed, const QStringList& invalidated);

private:
    struct Question {
        QDBusConnection bus;
        QDBusMessage call;
    };

    void add(const QDBusConnection& bus, const QDBusMessage& question);
    void ask(const QString& service);
    void setLocking(const QString& service, bool isLocking);
    void update();

    /// By the name of the service that answers.
    QHash<QString, Question> m_questions;
    /// The services that say so.
    QSet<QString> m_locking;
    QPointer<const SessionLock> m_display;
    bool m_isLocked = false;
};

} // namespace nimbarrow
