#pragma once

#include <QDBusConnection>
#include <QDBusContext>
#include <QDBusMessage>
#include <QDBusObjectPath>
#include <QMap>
#include <QObject>
#include <QStringList>
#include <QVariantMap>

namespace nimbarrow {

/// The part of a desktop that darkens the screen, as its clients know it: each inhibition has a number, only
/// who took it can give it back, and it ends with its client.
class FakeScreenSaver : public QObject, protected QDBusContext {
    Q_OBJECT
    Q_CLASSINFO("D-Bus Interface", "org.freedesktop.ScreenSaver")

public:
    FakeScreenSaver(const QString& address, uint firstCookie);
    ~FakeScreenSaver() override;

    /// Senders by the numbers of their inhibitions.
    QMap<uint, QString> held;
    /// Everything that was asked of it, in order.
    QStringList log;
    bool answers = true;
    bool refuses = false;

public Q_SLOTS:
    uint Inhibit(const QString& application, const QString& reason); // NOLINT
    void UnInhibit(uint cookie); // NOLINT

private Q_SLOTS:
    void followClient(const QString& name, const QString& oldOwner, const QString& newOwner);

private:
    QDBusConnection m_bus;
    uint m_nextCookie;
};

/// The portal's way to the same: a request that lasts until it is closed.
class FakeInhibitPortal : public QObject {
    Q_OBJECT
    Q_CLASSINFO("D-Bus Interface", "org.freedesktop.portal.Inhibit")

public:
    explicit FakeInhibitPortal(const QString& address);
    ~FakeInhibitPortal() override;

    /// What is in force: flags and reason of each request.
    QStringList held;
    int asked = 0;

public Q_SLOTS:
    QDBusObjectPath Inhibit(const QString& window, uint flags, const QVariantMap& options); // NOLINT

private:
    QDBusConnection m_bus;
};

/// One request of the portal's.
class FakePortalRequest : public QObject {
    Q_OBJECT
    Q_CLASSINFO("D-Bus Interface", "org.freedesktop.portal.Request")

public:
    FakePortalRequest(FakeInhibitPortal& portal, QString entry);

public Q_SLOTS:
    void Close(); // NOLINT

private:
    FakeInhibitPortal& m_portal;
    QString m_entry;
};

} // namespace nimbarrow
