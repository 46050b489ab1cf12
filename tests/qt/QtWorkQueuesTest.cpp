#include "qt/QtWorkQueues.h"

#include "support/Test.h"

#include <QThread>

#include <atomic>
#include <latch>
#include <pthread.h>
#include <thread>

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

/// While this stands no new thread finds room for its stack.
class NoThreads {
public:
    NoThreads()
    {
        ::pthread_getattr_default_np(&m_usual);
        auto vast = m_usual;
        ::pthread_attr_setstacksize(&vast, std::size_t { 1 } << 46U);
        ::pthread_setattr_default_np(&vast);
    }
    ~NoThreads()
    {
        ::pthread_setattr_default_np(&m_usual);
        ::pthread_attr_destroy(&m_usual);
    }
    Q_DISABLE_COPY_MOVE(NoThreads)

private:
    pthread_attr_t m_usual {};
};

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

    void finishesWhatAnswersHandIn()
    {
        const auto queue = QtWorkQueues().serial(u"store"_s);
        bool over = false;
        queue->run([] { QThread::msleep(20); }, this,
            [&] {
                queue->run([] {}, this, [&] { over = true; });
                // It has run before this answer is over.
                QThread::msleep(20);
            });
        QVERIFY(queue->finish(1min));
        QVERIFY(over);
        std::latch held(1);
        queue->run([&] { held.wait(); });
        QVERIFY(!queue->finish(10ms));
        held.count_down();
        QVERIFY(queue->finish(1min));
    }

    void worksOnceThereAreThreadsAgain()
    {
        auto queue = QtWorkQueues().serial(u"store"_s);
        QList<int> worked;
        bool answered = false;
        {
            const NoThreads none;
            queue->run([&] { worked << 1; }, this, [&] { answered = true; });
            QVERIFY(worked.isEmpty());
        }
        QTRY_VERIFY(answered);
        // Whoever waits for the end has a thread to spare.
        for (const auto goes : { false, true }) {
            QTRY_VERIFY(!threadNames().contains(u"store"_s));
            const NoThreads none;
            queue->run([&] { worked << 2; });
            QVERIFY(goes || queue->finish(1min));
            if (goes)
                queue.reset();
        }
        QCOMPARE(worked, (QList { 1, 2, 2 }));
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
        std::latch held(1);
        queue->run([] {}, this,
            [&] {
                held.count_down();
                queue.reset();
            });
        queue->run([&] { held.wait(); }, this, [&] { after = true; });
        while (queue)
            QCoreApplication::sendPostedEvents();
        // As a wait of Qt Test may do in between.
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
        QTRY_VERIFY(after);
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
