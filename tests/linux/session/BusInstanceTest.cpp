#include "linux/session/BusInstance.h"

#include "support/PrivateBus.h"

#include <QDir>
#include <QElapsedTimer>
#include <QTemporaryDir>
#include <QTest>

#include <cstdio>
#include <sys/socket.h>
#include <sys/un.h>
#include <unistd.h>

using namespace nimbarrow;
using namespace Qt::StringLiterals;

namespace {

/// This test program again, as one copy of the program that says what it found and stays.
class Copy {
public:
    Copy(const QString& bus, const QString& runtimeFolder, const QString& dataFolder)
    {
        auto environment = QProcessEnvironment::systemEnvironment();
        environment.insert(u"DBUS_SESSION_BUS_ADDRESS"_s, bus);
        environment.insert(u"XDG_RUNTIME_DIR"_s, runtimeFolder);
        m_process.setProcessEnvironment(environment);
        m_process.setProcessChannelMode(QProcess::ForwardedErrorChannel);
        m_process.start(QCoreApplication::applicationFilePath(), { u"--as-copy"_s, dataFolder });
        m_process.waitForReadyRead();
        m_answer = m_process.readLine().trimmed();
    }

    ~Copy() { killHard(); }
    Q_DISABLE_COPY_MOVE(Copy)

    [[nodiscard]] QByteArray answer() const { return m_answer; }

    void killHard()
    {
        m_process.kill();
        m_process.waitForFinished();
    }

private:
    QProcess m_process;
    QByteArray m_answer;
};

int runAsCopy()
{
    BusInstance instance(QCoreApplication::arguments().last());
    const bool another = instance.anotherIsRunning();
    const bool same = instance.anotherIsRunning() == another;
    std::puts(!same ? "unsure" : another ? "second" : "first");
    std::fflush(stdout);
    return QCoreApplication::exec();
}

/// A socket that takes connections and says nothing.
class MuteSocket {
public:
    explicit MuteSocket(const QByteArray& path)
        : m_socket(::socket(AF_UNIX, SOCK_STREAM, 0))
    {
        sockaddr_un address {};
        address.sun_family = AF_UNIX;
        qstrncpy(address.sun_path, path.constData(), sizeof address.sun_path);
        m_listens = ::bind(m_socket, reinterpret_cast<const sockaddr*>(&address), sizeof address) == 0
            && ::listen(m_socket, 8) == 0;
    }
    ~MuteSocket() { ::close(m_socket); }
    Q_DISABLE_COPY_MOVE(MuteSocket)

    [[nodiscard]] bool listens() const { return m_listens; }

private:
    int m_socket;
    bool m_listens = false;
};

} // namespace

class BusInstanceTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void onlyOneCopyRuns_data()
    {
        QTest::addColumn<QString>("bus");
        QTest::newRow("bus") << u"live"_s;
        QTest::newRow("no bus") << QString();
        QTest::newRow("dead address") << u"unix:path=/nonexistent/bus"_s;
        QTest::newRow("address of another kind") << u"nonsense"_s;
        QTest::newRow("bus that never answers") << u"mute"_s;
    }

    void onlyOneCopyRuns()
    {
        QFETCH(QString, bus);
        const QTemporaryDir folder;
        std::optional<PrivateBus> live;
        std::optional<MuteSocket> mute;
        if (bus == "live"_L1) {
            live.emplace();
            bus = live->address();
            QVERIFY(!bus.isEmpty());
        } else if (bus == "mute"_L1) {
            const auto path = folder.filePath(u"mute"_s);
            mute.emplace(path.toUtf8());
            QVERIFY(mute->listens());
            bus = "unix:path="_L1 + path;
        }

        QElapsedTimer time;
        time.start();
        // Without data of their own the session decides.
        const auto data = u"/proc/nowhere"_s;
        Copy first(bus, folder.path(), data);
        QCOMPARE(first.answer(), "first"_ba);
        Copy second(bus, folder.path(), data);
        QCOMPARE(second.answer(), "second"_ba);
        second.killHard();
        first.killHard();
        const Copy third(bus, folder.path(), data);
        QCOMPARE(third.answer(), "first"_ba);
        QVERIFY(time.elapsed() < 15'000);
    }

    void oneCopyHasTheDataWhateverTheSession()
    {
        const QTemporaryDir folder;
        const PrivateBus bus;
        const PrivateBus otherBus;
        const auto data = folder.filePath(u"share/Nimbarrow"_s);
        QVERIFY(QDir().mkpath(folder.filePath(u"other"_s)));
        {
            Copy first(bus.address(), folder.path(), data);
            QCOMPARE(first.answer(), "first"_ba);
            const Copy second(otherBus.address(), folder.filePath(u"other"_s), data);
            QCOMPARE(second.answer(), "second"_ba);
            const Copy third({}, folder.filePath(u"other"_s), data);
            QCOMPARE(third.answer(), "second"_ba);
            const Copy otherData(bus.address(), folder.path(), folder.filePath(u"more"_s));
            QCOMPARE(otherData.answer(), "second"_ba);
        }
        const Copy next(otherBus.address(), folder.filePath(u"other"_s), data);
        QCOMPARE(next.answer(), "first"_ba);
    }
};

int main(int count, char** values)
{
    QCoreApplication app(count, values);
    if (QCoreApplication::arguments().contains("--as-copy"_L1))
        return runAsCopy();
    BusInstanceTest test;
    return QTest::qExec(&test, count, values);
}
#include "BusInstanceTest.moc"
