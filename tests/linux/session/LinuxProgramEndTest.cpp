#include "linux/session/LinuxProgramEnd.h"

#include "support/PrivateBus.h"
#include "support/Test.h"

#include <QDBusMessage>

#include <csignal>

/// The log-out and the loss of the display are played with the whole program.
class LinuxProgramEndTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void aSignalEndsItOnTheMainLoop()
    {
        for (const int signal : { SIGTERM, SIGINT, SIGHUP }) {
            const LinuxProgramEnd end(std::nullopt);
            const QSignalSpy requested(&end, &ProgramEnd::requested);
            ::raise(signal);
            QCOMPARE(requested.size(), 0);
            QTRY_COMPARE(requested.size(), 1);
            // This process is to go on.
            ::alarm(0);
        }
    }

    void whatIsIgnoredStaysIgnored()
    {
        ::signal(SIGHUP, SIG_IGN);
        {
            const LinuxProgramEnd end(std::nullopt);
            const QSignalSpy requested(&end, &ProgramEnd::requested);
            ::raise(SIGHUP);
            ::raise(SIGTERM);
            QTRY_COMPARE(requested.size(), 1);
            ::alarm(0);
        }
        QVERIFY(::signal(SIGHUP, SIG_DFL) == SIG_IGN);
    }

    void theLoginManagerTellsOfAShutdown()
    {
        const PrivateBus bus;
        const LinuxProgramEnd end(QDBusConnection::connectToBus(bus.address(), u"program"_s));
        const QSignalSpy mayEnd(&end, &ProgramEnd::sessionMayEnd);
        auto manager = QDBusConnection::connectToBus(bus.address(), u"manager"_s);
        for (const bool begins : { false, true }) {
            auto told = QDBusMessage::createSignal(
                u"/org/freedesktop/login1"_s, u"org.freedesktop.login1.Manager"_s, u"PrepareForShutdown"_s);
            told << begins;
            QVERIFY(manager.send(told));
        }
        QTRY_COMPARE(mayEnd.size(), 1);
        QDBusConnection::disconnectFromBus(u"program"_s);
        QDBusConnection::disconnectFromBus(u"manager"_s);
    }
};

QTEST_GUILESS_MAIN(LinuxProgramEndTest)
#include "LinuxProgramEndTest.moc"
