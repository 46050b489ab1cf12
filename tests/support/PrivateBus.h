#pragma once

#include "support/TestFolder.h"

#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusPendingCall>
#include <QProcess>
#include <QTest>

#include <csignal>
#include <sys/prctl.h>

namespace nimbarrow {

/// Writes what a bus needs that starts the services of a folder, and what else it is told of its policy.
/// Returns the path.
inline QString busConfiguration(const TestFolder& services, const QByteArray& policy = {})
{
    const auto path = services.filePath(QStringLiteral("bus.conf"));
    writeFile(path,
        "<busconfig><type>session</type><listen>unix:tmpdir=/tmp</listen><servicedir>"
            + services.path().toUtf8()
            + "</servicedir><policy context='default'><allow send_destination='*'/>"
              "<allow eavesdrop='false'/><allow own='*'/>"
            + policy + "</policy></busconfig>");
    return path;
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

/// The answer to a question, with the events of this thread handled until it comes. QDBus::BlockWithGui does
/// that too, but waits for ever for an answer that is there before its waiting has begun.
inline QDBusMessage answerTo(const QDBusMessage& question, const QDBusConnection& bus)
{
    const auto call = bus.asyncCall(question);
    return QTest::qWaitFor([&call] { return call.isFinished(); }, 20'000) ? call.reply() : QDBusMessage();
}

} // namespace nimbarrow
