#pragma once

#include "support/PrivateBus.h"

#include <QDBusConnection>
#include <QDBusContext>
#include <QDBusMessage>
#include <QDBusObjectPath>
#include <QMap>
#include <QObject>
#include <QStringList>
#include <QUuid>
#include <QVariantMap>

namespace nimbarrow {

/// A service with a connection of its own, so that to the bus it is another process; it ends with the object.
class FakeService : public QObject, protected QDBusContext {
    Q_OBJECT

public:
    FakeService(const QString& address, const QString& name, const QString& path)
        : bus(QDBusConnection::connectToBus(address, QUuid::createUuid().toString()))
        , m_name(name)
    {
        bus.registerObject(path, this, QDBusConnection::ExportAllSlots);
        bus.registerService(name);
    }
    ~FakeService() override { endService(bus, m_name); }

protected:
    QDBusConnection bus;

private:
    QString m_name;
};

/// The part of a desktop that darkens the screen, as its clients know it: each inhibition has a number, only
/// who took it can give it back, and it ends with its client.
class FakeScreenSaver final : public FakeService {
    Q_OBJECT
    Q_CLASSINFO("D-Bus Interface", "org.freedesktop.ScreenSaver")

public:
    explicit FakeScreenSaver(const QString& address)
        : FakeService(address, QStringLiteral("org.freedesktop.ScreenSaver"),
            QStringLiteral("/org/freedesktop/ScreenSaver"))
    {
        bus.connect({}, QStringLiteral("/org/freedesktop/DBus"), QStringLiteral("org.freedesktop.DBus"),
            QStringLiteral("NameOwnerChanged"), this, SLOT(followClient(QString, QString, QString)));
    }

    /// Senders by the numbers of their inhibitions.
    QMap<uint, QString> held;
    /// Everything that was asked of it, in order.
    QStringList log;
    bool answers = true;
    bool refuses = false;
    QDBusMessage unanswered;

    /// Grants what it has not answered so far.
    void answerLate()
    {
        held.insert(1, unanswered.service());
        bus.send(unanswered.createReply(1U));
    }

public Q_SLOTS:
    uint Inhibit(const QString& application, const QString& reason) // NOLINT
    {
        constexpr uint cookie = 7;
        log << QStringLiteral("Inhibit %1: %2").arg(application, reason);
        if (!answers) {
            setDelayedReply(true);
            unanswered = message();
        } else if (refuses) {
            sendErrorReply(QDBusError::AccessDenied, QStringLiteral("no"));
        } else {
            held.insert(cookie + uint(held.size()), message().service());
        }
        return cookie + uint(held.size()) - 1;
    }

    void UnInhibit(uint cookie) // NOLINT
    {
        log << QStringLiteral("UnInhibit %1").arg(cookie);
        if (held.value(cookie) == message().service())
            held.remove(cookie);
    }

private Q_SLOTS:
    void followClient(const QString& name, const QString& /*oldOwner*/, const QString& newOwner)
    {
        if (newOwner.isEmpty())
            held.removeIf([&name](const auto& entry) { return entry.value() == name; });
    }
};

/// The portal's way to the same: a request that lasts until it is closed.
class FakePortalRequest final : public QObject {
    Q_OBJECT
    Q_CLASSINFO("D-Bus Interface", "org.freedesktop.portal.Request")

public Q_SLOTS:
    void Close() { deleteLater(); } // NOLINT
};

class FakeInhibitPortal final : public FakeService {
    Q_OBJECT
    Q_CLASSINFO("D-Bus Interface", "org.freedesktop.portal.Inhibit")

public:
    explicit FakeInhibitPortal(const QString& address)
        : FakeService(address, QStringLiteral("org.freedesktop.portal.Desktop"),
            QStringLiteral("/org/freedesktop/portal/desktop"))
    {
    }

    [[nodiscard]] qsizetype held() const { return findChildren<FakePortalRequest*>().size(); }
    /// Flags and reason of each request that was ever made.
    QStringList log;

public Q_SLOTS:
    QDBusObjectPath Inhibit(const QString& /*window*/, uint flags, const QVariantMap& options) // NOLINT
    {
        log << QStringLiteral("%1 %2").arg(flags).arg(options.value(QStringLiteral("reason")).toString());
        auto* const request = new FakePortalRequest;
        request->setParent(this);
        const auto path = QStringLiteral("/org/freedesktop/portal/desktop/request/t%1").arg(log.size());
        bus.registerObject(path, request, QDBusConnection::ExportAllSlots);
        return QDBusObjectPath(path);
    }
};

} // namespace nimbarrow
