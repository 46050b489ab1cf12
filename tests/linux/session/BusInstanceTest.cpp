#include "linux/session/BusInstance.h"

#include "support/PrivateBus.h"
#include "support/Test.h"

#include <QElapsedTimer>
#include <QLocalServer>

#include <cstdio>

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

} // namespace

class BusInstanceTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void onlyOneCopyRuns_data()
    {
        const Rows<QString> row;
        row("bus", u"live"_s);
        row("no bus", {});
        row("dead address", u"unix:path=/nonexistent/bus"_s);
        row("address of another kind", u"nonsense"_s);
        row("bus that never answers", u"mute"_s);
    }
    void onlyOneCopyRuns()
    {
        auto [bus] = Rows<QString>::current();
        const QTemporaryDir folder;
        std::optional<PrivateBus> live;
        QLocalServer mute;
        if (bus == "live"_L1) {
            live.emplace();
            bus = live->address();
            QVERIFY(!bus.isEmpty());
        } else if (bus == "mute"_L1) {
            const auto path = folder.filePath(u"mute"_s);
            // It takes connections and says nothing.
            QVERIFY(mute.listen(path));
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
