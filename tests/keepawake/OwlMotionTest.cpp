#include "keepawake/OwlMotion.h"

#include "support/ManualTime.h"

#include <QSignalSpy>
#include <QTest>

#include <deque>

using namespace nimbarrow;
using namespace std::chrono_literals;

class OwlMotionTest : public QObject {
    Q_OBJECT

    struct Fixture {
        ManualTime time;
        /// What the owl is told when it asks for a number; then nothing but the longest pauses.
        std::deque<double> dice;
        OwlMotion motion { time, time, [this] {
                              if (dice.empty())
                                  return 0.999;
                              const auto value = dice.front();
                              dice.pop_front();
                              return value;
                          } };

        void open(bool awake)
        {
            motion.setAwake(awake);
            motion.setActive(true);
        }
        [[nodiscard]] const OwlPose& pose() const { return motion.pose(); }
    };
    std::unique_ptr<Fixture> m;

private Q_SLOTS:
    void init() { m = std::make_unique<Fixture>(); }

    void standsStillWhereNobodyLooks_data()
    {
        QTest::addColumn<bool>("awake");
        QTest::addColumn<bool>("reduced");
        QTest::newRow("asleep, closed") << false << false;
        QTest::newRow("awake, closed") << true << false;
        QTest::newRow("asleep, less motion") << false << true;
        QTest::newRow("awake, less motion") << true << true;
    }

    void standsStillWhereNobodyLooks()
    {
        QFETCH(bool, awake);
        QFETCH(bool, reduced);
        m->open(!awake);
        m->time.advance(4s);
        // In the middle of everything.
        if (reduced)
            m->motion.setReduced(true);
        else
            m->motion.setActive(false);
        m->motion.setAwake(awake);
        QCOMPARE(m->time.pending(), 0);
        QVERIFY(m->pose() == OwlPose { .wake = awake ? 1.0 : 0.0 });
    }

    void breathesAndSnoresAsleep()
    {
        m->open(false);
        m->time.advance(1700ms);
        QVERIFY(m->pose().breathe > 0.95);
        m->time.advance(1700ms);
        QVERIFY(m->pose().breathe < 0.05);
        const auto rise = m->pose().zRise;
        m->time.advance(1100ms);
        const auto risen = m->pose().zRise - rise;
        QVERIFY(std::abs(risen + (risen < 0 ? 1 : 0) - 0.5) < 0.05);
        QCOMPARE(m->pose().wake, 0.0);

        // Cheaply: a frame costs the whole surface.
        QSignalSpy frames(&m->motion, &OwlMotion::poseChanged);
        m->time.advance(10s);
        QVERIFY(frames.size() > 100);
        QVERIFY(frames.size() < 125);
    }

    void jumpsWhenItWakesUp()
    {
        m->open(false);
        m->time.advance(1s);
        m->motion.setAwake(true);
        m->time.advance(160ms);
        QVERIFY(m->pose().hop > 0.9);
        QCOMPARE(m->pose().wake, 1.0);
        QCOMPARE(m->pose().breathe, 0.0);
        m->time.advance(1s);
        QCOMPARE(m->pose().hop, 0.0);
        QVERIFY(m->pose() == OwlPose { .wake = 1 });
    }

    void doesNotJumpWhenTheSurfaceOpens()
    {
        m->open(true);
        QSignalSpy frames(&m->motion, &OwlMotion::poseChanged);
        m->time.advance(1500ms);
        QCOMPARE(frames.size(), 0);
        // And nothing ticks but the pause.
        QCOMPARE(m->time.pending(), 1);
    }

    void makesOneSmallMoveAfterAPause_data()
    {
        QTest::addColumn<double>("move");
        QTest::addColumn<int>("after");
        QTest::addColumn<double>("blink");
        QTest::addColumn<double>("glance");
        QTest::addColumn<bool>("tilted");
        QTest::addColumn<bool>("hops");
        QTest::newRow("closes its eyes") << 0.1 << 80 << 1.0 << 0.0 << false << false;
        QTest::newRow("has opened them") << 0.1 << 180 << 0.0 << 0.0 << false << false;
        QTest::newRow("looks aside") << 0.3 << 180 << 0.0 << -1.0 << false << false;
        QTest::newRow("still looks there") << 0.3 << 600 << 0.0 << -1.0 << false << false;
        QTest::newRow("tilts its head") << 0.7 << 800 << 0.0 << 0.0 << true << false;
        QTest::newRow("hops") << 0.9 << 160 << 0.0 << 0.0 << false << true;
        QTest::newRow("has landed") << 0.9 << 1200 << 0.0 << 0.0 << false << false;
    }

    void makesOneSmallMoveAfterAPause()
    {
        QFETCH(double, move);
        QFETCH(int, after);
        QFETCH(bool, tilted);
        QFETCH(bool, hops);
        // The shortest pause, the move, and to the left where there is a side.
        m->dice = { 0, move, 0, 0 };
        m->open(true);
        m->time.advance(1600ms);
        m->time.advance(std::chrono::milliseconds(after));
        const auto pose = m->pose();
        // By the last frame, which is up to 16 ms old.
        const auto near = [](double a, double b) { return std::abs(a - b) < 0.12; };
        QFETCH(double, blink);
        QVERIFY(near(pose.blink, blink));
        QFETCH(double, glance);
        QVERIFY(near(pose.glance, glance));
        QCOMPARE(pose.tilt < -8, tilted);
        QCOMPARE(pose.hop > 0.2, hops);

        // Then it stands as before, until the next pause is over.
        m->time.advance(3s);
        QVERIFY(m->pose() == OwlPose { .wake = 1 });
        QCOMPARE(m->time.pending(), 1);
    }

    void fallsAsleepFromAnyMove()
    {
        m->dice = { 0, 0.7 };
        m->open(true);
        m->time.advance(1900ms);
        QVERIFY(m->pose().tilt != 0);
        m->motion.setAwake(false);
        m->time.advance(400ms);
        QCOMPARE(m->pose().tilt, 0.0);
        QCOMPARE(m->pose().wake, 0.0);
        QCOMPARE(m->time.pending(), 1);
    }
};

QTEST_GUILESS_MAIN(OwlMotionTest)
#include "OwlMotionTest.moc"
