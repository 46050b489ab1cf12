#include "qt/QtWorkQueues.h"

#include <QDir>
#include <QFile>
#include <QTest>
#include <QThread>

#include <algorithm>
#include <atomic>
#include <latch>
#include <thread>

using namespace nimbarrow;
using namespace Qt::StringLiterals;

namespace {

/// What the system calls the threads of this process.
QStringList threadNames()
{
    QStringList names;
    const QDir tasks(u"/proc/self/task"_s);
    for (const auto& id : tasks.entryList(QDir::Dirs | QDir::NoDotAndDotDot)) {
        QFile name(tasks.filePath(id) + "/comm"_L1);
        if (name.open(QIODevice::ReadOnly))
            names << QString::fromUtf8(name.readAll()).trimmed();
    }
    return names;
}

} // namespace

class QtWorkQueuesTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void serialWorkRunsInOrderOffTheMainThread()
    {
        const auto queue = QtWorkQueues().serial(u"ua.tessak.Nimbarrow.store"_s);
        QList<int> worked;
        QList<int> answered;
        const auto* const mainThread = QThread::currentThread();
        bool workedElsewhere = true;
        bool answeredHere = true;
        for (int i = 0; i < 200; ++i) {
            queue->run(
                [&, i] {
                    worked << i;
                    workedElsewhere = workedElsewhere && QThread::currentThread() != mainThread;
                },
                this,
                [&, i] {
                    answered << i;
                    answeredHere = answeredHere && QThread::currentThread() == mainThread;
                });
        }
        QTRY_COMPARE(answered.size(), 200);
        QCOMPARE(worked, answered);
        QVERIFY(std::is_sorted(worked.begin(), worked.end()));
        QVERIFY(workedElsewhere);
        QVERIFY(answeredHere);
    }

    void concurrentWorkRunsTogether()
    {
        if (std::thread::hardware_concurrency() < 2)
            QSKIP("One core runs one piece of work at a time.");
        const auto queue = QtWorkQueues().concurrent(u"ua.tessak.Nimbarrow.thumbnails"_s);
        // Each waits for the other, so neither ends if they run one after the other.
        std::latch both(2);
        int answers = 0;
        for (int i = 0; i < 2; ++i)
            queue->run([&] { both.arrive_and_wait(); }, this, [&] { ++answers; });
        QTRY_COMPARE(answers, 2);
    }

    void nothingHandedInIsLostWhenTheQueueGoes()
    {
        std::atomic<int> worked = 0;
        int answered = 0;
        {
            const auto queue = QtWorkQueues().serial(u"store"_s);
            for (int i = 0; i < 20; ++i) {
                queue->run(
                    [&] {
                        QThread::msleep(1);
                        ++worked;
                    },
                    this, [&] { ++answered; });
            }
        }
        QCOMPARE(worked.load(), 20);
        QTRY_COMPARE(answered, 20);
    }

    void aReceiverThatIsGoneHearsNothing()
    {
        const auto queue = QtWorkQueues().serial(u"store"_s);
        auto receiver = std::make_unique<QObject>();
        bool heard = false;
        bool over = false;
        queue->run([] {}, receiver.get(), [&] { heard = true; });
        queue->run([] {}, this, [&] { over = true; });
        receiver.reset();
        QTRY_VERIFY(over);
        QVERIFY(!heard);
    }

    void anAnswerMayDestroyTheQueue()
    {
        auto queue = QtWorkQueues().serial(u"store"_s);
        bool after = false;
        queue->run([] {}, this, [&] { queue.reset(); });
        queue->run([] {}, this, [&] { after = true; });
        QTRY_VERIFY(after);
        QVERIFY(!queue);
    }

    void theThreadIsNamedAndEndsWhenIdle()
    {
        const auto queue = QtWorkQueues().serial(u"ua.tessak.Nimbarrow.pasteboard"_s);
        QStringList during;
        bool done = false;
        queue->run([&] { during = threadNames(); }, this, [&] { done = true; });
        QTRY_VERIFY(done);
        QVERIFY(during.contains(u"pasteboard"_s));
        QTRY_VERIFY(!threadNames().contains(u"pasteboard"_s));

        done = false;
        queue->run([] {}, this, [&] { done = true; });
        QTRY_VERIFY(done);
    }
};

QTEST_GUILESS_MAIN(QtWorkQueuesTest)
#include "QtWorkQueuesTest.moc"
