#pragma once

#include <QCoreApplication>
#include <QDBusConnection>
#include <QProcess>
#include <QTimer>

#include <csignal>
#include <sys/prctl.h>

namespace nimbarrow {

/// Ends a service whose object is being destroyed. Qt tells the connection of what goes with it, on its own
/// thread: the connection, which must have a name of its own, goes a moment later.
inline void endService(QDBusConnection connection, const QString& service)
{
    connection.unregisterService(service);
    QTimer::singleShot(0, QCoreApplication::instance(),
        [connection] { QDBusConnection::disconnectFromBus(connection.name()); });
}

/// A message bus of the test's own, which ends with this object.
class PrivateBus {
public:
    /// As a session has it, or as the file of that path says.
    explicit PrivateBus(const QString& configuration = {})
    {
        const auto kind = configuration.isEmpty() ? QStringLiteral("--session")
                                                  : QStringLiteral("--config-file=") + configuration;
        // A test that crashes must not leave it behind.
        m_daemon.setChildProcessModifier([] { ::prctl(PR_SET_PDEATHSIG, SIGKILL); });
        m_daemon.start(QStringLiteral("dbus-daemon"),
            { kind, QStringLiteral("--nofork"), QStringLiteral("--print-address=1") });
        m_daemon.waitForReadyRead();
        m_address = QString::fromUtf8(m_daemon.readLine()).trimmed();
    }

    ~PrivateBus()
    {
        m_daemon.kill();
        m_daemon.waitForFinished();
    }
    Q_DISABLE_COPY_MOVE(PrivateBus)

    /// Empty when the bus could not be started.
    [[nodiscard]] QString address() const { return m_address; }

private:
    QProcess m_daemon;
    QString m_address;
};

} // namespace nimbarrow
