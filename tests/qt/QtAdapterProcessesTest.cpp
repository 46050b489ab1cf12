#include "qt/QtAdapterProcesses.h"

#include "support/Test.h"

#include <QFileInfo>

namespace {

/// A shell script as a companion, and everything that it did.
class Companion {
public:
    explicit Companion(const QString& script, const QString& program = u"/bin/sh"_s)
        : process(QtAdapterProcesses().launch({ program, { u"-c"_s, script } }))
    {
        QObject::connect(
            process.get(), &AdapterProcess::output, process.get(), [this](const QByteArray& bytes) {
                output += bytes;
                largest = std::max(largest, bytes.size());
                wasOverBefore = wasOverBefore || !ended.isEmpty();
                if (listens)
                    process->resume();
            });
    }

    std::unique_ptr<AdapterProcess> process;
    QSignalSpy launched { process.get(), &AdapterProcess::launched };
    QSignalSpy failed { process.get(), &AdapterProcess::failedToLaunch };
    QSignalSpy ended { process.get(), &AdapterProcess::ended };
    QByteArray output;
    qsizetype largest = 0;
    bool listens = true;
    bool wasOverBefore = false;
};

} // namespace

class QtAdapterProcessesTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void linesGoInAndOutUntilTheInputEnds()
    {
        Companion companion(u"while read -r line; do echo \"got $line\"; done; echo bye"_s);
        QTRY_COMPARE(companion.launched.size(), 1);
        QVERIFY(companion.launched[0][0].toLongLong() > 1);
        companion.process->write("seek 42.0\n");
        QTRY_COMPARE(companion.output, QByteArray("got seek 42.0\n"));
        companion.process->closeInput();
        QTRY_COMPARE(companion.ended.size(), 1);
        QCOMPARE(companion.output, QByteArray("got seek 42.0\nbye\n"));
        companion.process->write("too late\n");
    }

    void whatCannotRunSaysSo()
    {
        Companion companion({}, u"/does/not/exist"_s);
        QTRY_COMPARE(companion.failed.size(), 1);
        QVERIFY(!companion.failed[0][0].toString().isEmpty());
        QVERIFY(companion.launched.isEmpty() && companion.ended.isEmpty());
    }

    void floodWaitsInThePipeAndComesInSlices()
    {
        Companion companion(u"head -c 3000000 /dev/zero"_s);
        companion.listens = false;
        QTRY_VERIFY(!companion.output.isEmpty());
        const auto first = companion.output.size();
        QTest::qWait(50);
        QCOMPARE(companion.output.size(), first);
        QVERIFY(companion.ended.isEmpty());

        companion.listens = true;
        companion.process->resume();
        QTRY_COMPARE(companion.ended.size(), 1);
        QCOMPARE(companion.output.size(), 3'000'000);
        QVERIFY(companion.largest <= 65'536);
    }

    void lastWordsComeBeforeTheEnd()
    {
        for (auto run = 0; run < 10; ++run) {
            Companion companion(u"echo 'last words'"_s);
            QTRY_COMPARE(companion.ended.size(), 1);
            QCOMPARE(companion.output, QByteArray("last words\n"));
            QVERIFY(!companion.wasOverBefore);
        }
    }

    void stubbornOneIsEnded()
    {
        Companion companion(u"trap '' TERM; echo here; read -r forever"_s);
        QTRY_COMPARE(companion.output, QByteArray("here\n"));
        companion.process->terminate();
        QTRY_COMPARE(companion.ended.size(), 1);
    }

    void destroyingItEndsTheProgram()
    {
        Companion companion(u"exec sleep 1000"_s);
        QTRY_COMPARE(companion.launched.size(), 1);
        const auto folder = u"/proc/%1"_s.arg(companion.launched[0][0].toLongLong());
        QVERIFY(QFileInfo::exists(folder));
        companion.process.reset();
        QVERIFY(!QFileInfo::exists(folder));
    }
};

QTEST_GUILESS_MAIN(QtAdapterProcessesTest)
#include "QtAdapterProcessesTest.moc"
