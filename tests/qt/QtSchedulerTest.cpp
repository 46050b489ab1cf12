#include "qt/QtScheduler.h"

#include "qt/SystemClock.h"
#include "support/Test.h"

class QtSchedulerTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void runsOnceAndNotEarly()
    {
        QtScheduler scheduler;
        const SystemClock clock;
        const auto start = clock.now();
        int runs = 0;
        const auto timer = scheduler.after(20ms, [&] { ++runs; });
        QTRY_COMPARE(runs, 1);
        QVERIFY(clock.now() - start >= 20ms);
        QVERIFY(timer.isSet());
        QTest::qWait(40);
        QCOMPARE(runs, 1);
    }

    void repeatsUntilItsTaskSetsTheTimerAnew()
    {
        QtScheduler scheduler;
        int runs = 0;
        int last = 0;
        Timer timer;
        // The task must outlive its own timer: the text is read after the drop.
        timer = scheduler.every(1ms, 0ms, [&, text = QStringLiteral("alive")] {
            if (++runs == 3) {
                timer = scheduler.after(0ms, [&] { ++last; });
                QCOMPARE(text, QStringLiteral("alive"));
            }
        });
        QTRY_COMPARE(last, 1);
        QTest::qWait(20);
        QCOMPARE(runs, 3);
        QCOMPARE(last, 1);
    }

    void aDroppedTaskNeverRuns()
    {
        QtScheduler scheduler;
        bool ran = false;
        {
            const auto timer = scheduler.after(0ms, [&] { ran = true; });
        }
        QTest::qWait(10);
        QVERIFY(!ran);
    }

    void theWallClockTellsUtcWithMilliseconds()
    {
        const auto before = QDateTime::currentMSecsSinceEpoch();
        const auto told = SystemClock().wallTime();
        QCOMPARE(told.timeSpec(), Qt::UTC);
        QVERIFY(told.toMSecsSinceEpoch() >= before);
        QVERIFY(told.toMSecsSinceEpoch() <= QDateTime::currentMSecsSinceEpoch());
    }
};

QTEST_GUILESS_MAIN(QtSchedulerTest)
#include "QtSchedulerTest.moc"
