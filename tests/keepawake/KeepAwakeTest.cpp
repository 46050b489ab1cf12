#include "keepawake/KeepAwake.h"

#include "support/FakePowerAssertions.h"
#include "support/ManualTime.h"
#include "support/Test.h"

using Type = PowerAssertions::Type;

class KeepAwakeTest : public QObject {
    Q_OBJECT

    struct Fixture {
        FakePowerAssertions power;
        ManualTime time;
        KeepAwake keepAwake { power, time, time };
        int expired = 0;

        Fixture()
        {
            keepAwake.onExpired = [this] { ++expired; };
        }
    };
    std::unique_ptr<Fixture> m;

    [[nodiscard]] bool isOff() const
    {
        return !m->keepAwake.isActive() && !m->keepAwake.until() && m->power.held.isEmpty()
            && m->time.pending() == 0 && m->keepAwake.timeLeft().isEmpty();
    }

private Q_SLOTS:
    void init() { m = std::make_unique<Fixture>(); }

    void eachChoiceHoldsOneAssertionOfEachType_data()
    {
        const Rows<int, qint64, QString> row;
        row("1 h", 1, qint64(3600), u"1:00"_s);
        row("3 h", 3, qint64(3 * 3600), u"3:00"_s);
        row("for ever", 0, qint64(-1), u"∞"_s);
    }
    void eachChoiceHoldsOneAssertionOfEachType()
    {
        const auto [id, seconds, left] = Rows<int, qint64, QString>::current();
        m->keepAwake.choose(2);
        m->time.advance(10min);
        m->keepAwake.choose(id);

        QCOMPARE(m->power.held.size(), 2);
        QCOMPARE(m->power.held[0]->type, Type::PreventUserIdleDisplaySleep);
        QCOMPARE(m->power.held[1]->type, Type::PreventSystemSleep);
        QCOMPARE(m->power.held[1]->name, u"Nimbarrow keep awake"_s);
        // What was held before had gone by then.
        QCOMPARE(m->power.mostHeld, 2);
        QVERIFY(m->keepAwake.isActive());
        QCOMPARE(m->keepAwake.timeLeft(), left);
        if (seconds < 0) {
            QVERIFY(!m->keepAwake.until());
            QCOMPARE(m->time.pending(), 0);
        } else {
            QCOMPARE(m->keepAwake.until(), m->time.wallTime().addSecs(seconds));
        }
        // Who turns it off knows.
        m->keepAwake.deactivate();
        QVERIFY(isOff());
        QCOMPARE(m->expired, 0);
    }

    void aPeriodRunsOutOnceAndSaysSo()
    {
        m->keepAwake.choose(1);
        m->keepAwake.onExpired = [this] {
            // Whoever is told finds everything over already.
            QVERIFY(isOff());
            ++m->expired;
        };
        m->time.advance(1h - 1ms);
        QVERIFY(m->keepAwake.isActive());
        QCOMPARE(m->power.held.size(), 2);
        m->time.advance(1ms);
        QCOMPARE(m->expired, 1);
        m->time.advance(5h);
        QCOMPARE(m->expired, 1);
    }

    void theUsersClockEndsIt_data()
    {
        const Rows<int, QString, int> row;
        // After half an hour of one: the computer sleeps, or somebody sets the clock.
        row("slept through the end", 31, {}, 0);
        row("slept until the end", 30, {}, 0);
        row("slept a while", 20, u"0:10"_s, 10);
        row("clock set back", -300, u"0:30"_s, 30);
    }
    void theUsersClockEndsIt()
    {
        const auto [jump, left, minutesAwake] = Rows<int, QString, int>::current();
        m->keepAwake.choose(1);
        m->time.advance(30min);
        m->time.setWallTime(m->time.wallTime().addSecs(qint64(jump) * 60));
        // Noticed at once by who looks, and soon by nobody.
        const bool looks = minutesAwake > 0;
        if (looks)
            m->keepAwake.refresh();
        else
            m->time.advance(30s);
        QCOMPARE(m->keepAwake.timeLeft(), left);
        QCOMPARE(m->keepAwake.isActive(), minutesAwake > 0);
        m->time.advance(std::chrono::minutes(minutesAwake));
        QVERIFY(isOff());
        QCOMPARE(m->expired, 1);
    }

    void theTimeLeftCountsDownByMinutesRoundedUp()
    {
        m->keepAwake.choose(2);
        QSignalSpy changed(&m->keepAwake, &KeepAwake::timeLeftChanged);
        m->time.advance(59s);
        QCOMPARE(m->keepAwake.timeLeft(), u"2:00"_s);
        m->time.advance(1s);
        QCOMPARE(m->keepAwake.timeLeft(), u"1:59"_s);
        m->time.advance(118min + 30s);
        QCOMPARE(m->keepAwake.timeLeft(), u"0:01"_s);
        QCOMPARE(changed.size(), 119);
    }

    void oneTypeIsEnough()
    {
        m->power.missing = { Type::PreventUserIdleDisplaySleep };
        m->keepAwake.choose(1);
        QVERIFY(m->keepAwake.isActive());
        // The other one, refused after it was asked for.
        m->power.missing = {};
        m->keepAwake.choose(1);
        m->power.refuse(Type::PreventSystemSleep);
        QVERIFY(m->keepAwake.isActive());
        QCOMPARE(m->power.held.size(), 1);
        m->time.advance(1h);
        QVERIFY(isOff());
        QCOMPARE(m->expired, 1);
    }

    void nothingComesOfItWhereNobodyGrantsIt()
    {
        m->keepAwake.choose(1);
        m->power.refuse(Type::PreventSystemSleep);
        m->power.refuse(Type::PreventUserIdleDisplaySleep);
        QVERIFY(isOff());

        m->power.missing = { Type::PreventUserIdleDisplaySleep, Type::PreventSystemSleep };
        QSignalSpy changed(&m->keepAwake, &KeepAwake::isActiveChanged);
        m->keepAwake.choose(0);
        QVERIFY(isOff());
        QCOMPARE(changed.size(), 0);
        QCOMPARE(m->expired, 0);
    }

    void aFailedChangeLeavesWhatIsShown()
    {
        m->keepAwake.choose(1);
        const auto until = m->keepAwake.until();
        m->power.missing = { Type::PreventUserIdleDisplaySleep, Type::PreventSystemSleep };
        m->keepAwake.choose(2);
        QVERIFY(m->keepAwake.isActive());
        QCOMPARE(m->keepAwake.until(), until);
        QCOMPARE(m->power.held.size(), 0);
        m->time.advance(4h);
        m->keepAwake.refresh();
        QCOMPARE(m->keepAwake.timeLeft(), u"0:00"_s);
        QCOMPARE(m->expired, 0);
        m->keepAwake.deactivate();
        QVERIFY(isOff());
    }
};

QTEST_GUILESS_MAIN(KeepAwakeTest)
#include "KeepAwakeTest.moc"
