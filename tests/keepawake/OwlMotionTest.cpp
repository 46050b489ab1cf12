#include "keepawake/OwlMotion.h"

#include "support/ManualTime.h"
#include "support/Test.h"

#include <deque>

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

    void standsStillWhereNobodyLooks()
    {
        for (const bool awake : { false, true }) {
            for (const bool reduced : { false, true }) {
                init();
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
        }
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

    void makesOneSmallMoveAfterAPause()
    {
        struct Moment {
            const char* name;
            double move;
            std::chrono::milliseconds after;
            bool (*shows)(const OwlPose& pose);
        };
        const std::initializer_list<Moment> moments {
            { "closes its eyes", 0.1, 80ms, [](const OwlPose& pose) { return pose.blink > 0.9; } },
            { "has opened them", 0.1, 180ms, [](const OwlPose& pose) { return pose.blink == 0; } },
            { "looks aside", 0.3, 180ms, [](const OwlPose& pose) { return pose.glance == -1; } },
            { "tilts its head", 0.7, 800ms, [](const OwlPose& pose) { return pose.tilt < -8; } },
            { "hops", 0.9, 160ms, [](const OwlPose& pose) { return pose.hop > 0.2; } },
            { "has landed", 0.9, 1200ms, [](const OwlPose& pose) { return pose.hop == 0; } },
        };
        for (const auto& moment : moments) {
            init();
            // The shortest pause, the move, and to the left where there is a side.
            m->dice = { 0, moment.move, 0, 0 };
            m->open(true);
            m->time.advance(1600ms + moment.after);
            QVERIFY2(moment.shows(m->pose()), moment.name);
            // Then it stands as before, until the next pause is over.
            m->time.advance(3s);
            QVERIFY2(m->pose() == OwlPose { .wake = 1 }, moment.name);
            QCOMPARE(m->time.pending(), 1);
        }
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
