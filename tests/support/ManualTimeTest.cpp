#include "support/ManualTime.h"

#include <QTest>

#include <vector>

using namespace nimbarrow;
using namespace std::chrono_literals;

class ManualTimeTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void runsEveryTaskAtItsOwnMomentInOrder()
    {
        ManualTime time;
        const auto start = time.now();
        std::vector<std::pair<char, Clock::Instant::duration>> log;
        const auto note
            = [&](char name) { return [&, name] { log.emplace_back(name, time.now() - start); }; };

        const auto late = time.after(30ms, note('l'));
        const auto early = time.after(10ms, note('e'));
        const auto tick = time.every(10ms, 5ms, note('t'));
        time.advance(30ms);

        const decltype(log) expected { { 'e', 10ms }, { 't', 10ms }, { 't', 20ms }, { 'l', 30ms },
            { 't', 30ms } };
        QVERIFY(log == expected);
        QCOMPARE(time.pending(), 1);
    }

    void aTaskMayDropItsTimerAndSetAnother()
    {
        ManualTime time;
        int first = 0;
        int second = 0;
        Timer timer;
        timer = time.every(10ms, 0ms, [&] {
            ++first;
            timer = time.after(5ms, [&] { ++second; });
        });
        time.advance(15ms);
        QCOMPARE(first, 1);
        QCOMPARE(second, 1);
        QVERIFY(timer.isSet());
        QCOMPARE(time.pending(), 0);
    }

    void aDroppedTaskNeverRuns()
    {
        ManualTime time;
        bool ran = false;
        {
            const auto timer = time.after(10ms, [&] { ran = true; });
        }
        time.advance(1s);
        QVERIFY(!ran);
    }
};

QTEST_GUILESS_MAIN(ManualTimeTest)
#include "ManualTimeTest.moc"
