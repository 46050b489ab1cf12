#pragma once

#include <QCoreApplication>
#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusVirtualObject>
#include <QTimer>
#include <QUuid>

namespace nimbarrow {

/// A service that a test plays, with a connection of its own, so that to the bus it is another process. It
/// ends with the object.
class BusService : public QDBusVirtualObject {
public:
    BusService(const QString& busAddress, const QString& name, const QString& path)
        : m_bus(QDBusConnection::connectToBus(busAddress, QUuid::createUuid().toString()))
        , m_name(name)
    {
        if (!m_bus.registerVirtualObject(path, this, QDBusConnection::SubPath)
            || !m_bus.registerService(name))
            qFatal("The service does not start.");
    }

    ~BusService() override
    {
        m_bus.unregisterService(m_name);
        // Qt tells the connection of what goes with it, on its own thread: the connection goes a moment
        // later.
        QTimer::singleShot(0, QCoreApplication::instance(),
            [connection = m_bus.name()] { QDBusConnection::disconnectFromBus(connection); });
    }
    Q_DISABLE_COPY_MOVE(BusService)

    [[nodiscard]] QString introspect(const QString& /*path*/) const override { return {}; }

protected:
    /// With the types of what goes along, such as "org.example.Player.Seek x".
    [[nodiscard]] static QString signatureOf(const QDBusMessage& question)
    {
        return QStringLiteral("%1.%2 %3").arg(question.interface(), question.member(), question.signature());
    }

    QDBusConnection m_bus;
    const QString m_name;
};

} // namespace nimbarrow
