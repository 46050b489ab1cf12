#include "nowplaying/MediaRemoteSource.h"

#include "qt/QtAdapterProcesses.h"
#include "qt/QtWorkQueues.h"
#include "support/FakeAdapter.h"
#include "support/FakeApplications.h"
#include "support/ManualQueues.h"
#include "support/ManualTime.h"

#include <QTest>
#include <QTimer>

using namespace Qt::StringLiterals;
using namespace nimbarrow;
using namespace std::chrono_literals;

class MediaRemoteSourceTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void init() { m_bench = std::make_unique<Bench>(); }
    void cleanup() { m_bench.reset(); }

    void messagesOfOneReadAreHandledInOrder()
    {
        launchReady();
        say("{\"type\":\"state\",\"title\":\"One\"}\n{\"type\":\"idle\"}\n{\"type\":\"state\",\"ti");
        QCOMPARE(titles(), QStringList({ u"One"_s, {} }));
        QVERIFY(!adapter().isPaused);
        say("tle\":\"Two\"}\n");
        QCOMPARE(titles(), QStringList({ u"One"_s, {}, u"Two"_s }));
        QCOMPARE(m_bench->snapshots.last().date, m_bench->time.wallTime());
        QCOMPARE(m_bench->snapshots.last().app->pid, 0);
    }

    void companionWaitsUntilWhatItSaidIsRead()
    {
        launchReady();
        adapter().say("{\"type\":\"idle\"}\n");
        QVERIFY(adapter().isPaused);
        QCOMPARE(m_bench->snapshots.size(), 0);
        m_bench->queues.runAll();
        QVERIFY(!adapter().isPaused);
        QCOMPARE(m_bench->snapshots.size(), 1);
    }

    void commandsAreLinesAndLostBeforeReady()
    {
        m_bench->source.start();
        adapter().run();
        m_bench->source.next();
        say("{\"type\":\"ready\"}\n");
        QCOMPARE(adapter().written, QByteArrayList());
        m_bench->source.playPause();
        m_bench->source.next();
        m_bench->source.previous();
        m_bench->source.seek(42);
        m_bench->source.seek(qQNaN());
        m_bench->source.setVolume(47.6);
        m_bench->source.setVolume(150);
        m_bench->source.setVolume(-3);
        QCOMPARE(adapter().written,
            QByteArrayList({ "toggle\n", "next\n", "previous\n", "seek 42.0\n", "volume 48\n", "volume 100\n",
                "volume 0\n" }));
    }

    void companionThatIsNeverReadyEndsInUnavailable()
    {
        m_bench->source.start();
        for (const auto delay : { 1000ms, 3000ms }) {
            adapter().run();
            m_bench->time.advance(4999ms);
            QVERIFY(!adapter().isTerminated);
            m_bench->time.advance(1ms);
            QVERIFY(adapter().isTerminated);
            const auto launches = m_bench->processes.calls.size();
            adapter().end();
            m_bench->time.advance(delay - 1ms);
            QCOMPARE(m_bench->processes.calls.size(), launches);
            m_bench->time.advance(1ms);
            QCOMPARE(m_bench->processes.calls.size(), launches + 1);
        }
        adapter().run();
        m_bench->time.advance(5s);
        QCOMPARE(m_bench->unavailable, 0);
        adapter().end();
        QCOMPARE(m_bench->unavailable, 1);
        m_bench->time.advance(10min);
        QCOMPARE(m_bench->processes.calls.size(), 3);
    }

    void quickDeathsAreFollowedByGrowingDelays()
    {
        launchReady();
        for (const auto delay : { 1s, 3s, 7s, 15s, 30s, 30s, 30s }) {
            m_bench->time.advance(9999ms);
            expectRelaunchAfter(delay);
        }
        // A long life is forgiven at once.
        m_bench->time.advance(10s);
        expectRelaunchAfter(0s);
        m_bench->time.advance(9s);
        expectRelaunchAfter(1s);
        QCOMPARE(m_bench->unavailable, 0);
    }

    void watchdogIsQuietOnceReady()
    {
        launchReady();
        m_bench->time.advance(1min);
        QVERIFY(!adapter().isTerminated);
        QCOMPARE(m_bench->time.pending(), 0);
    }

    void missingCompanionIsUnavailableAtOnce()
    {
        m_bench->command.call.reset();
        m_bench->source.start();
        QCOMPARE(m_bench->unavailable, 1);
        QCOMPARE(m_bench->processes.calls.size(), 0);
        QCOMPARE(m_bench->time.pending(), 0);
    }

    void companionThatCannotBeStartedIsNotTriedAgain()
    {
        m_bench->source.start();
        adapter().refuseToRun();
        QCOMPARE(m_bench->unavailable, 1);
        m_bench->time.advance(10min);
        QCOMPARE(m_bench->processes.calls.size(), 1);
    }

    void stopLetsTheCompanionLeaveAndThenInsists()
    {
        launchReady();
        const QPointer leaving = &adapter();
        adapter().say("{\"type\":\"idle\"}\n");
        m_bench->source.stop();
        m_bench->queues.runAll();
        QCOMPARE(m_bench->snapshots.size(), 0);
        QVERIFY(leaving->isInputClosed);
        QVERIFY(!leaving->isPaused);
        m_bench->time.advance(999ms);
        QVERIFY(!leaving->isTerminated);
        m_bench->time.advance(1ms);
        QVERIFY(leaving->isTerminated);
        leaving->end();
        m_bench->time.advance(10min);
        QCOMPARE(m_bench->processes.calls.size(), 1);
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
        QVERIFY(!leaving);
    }

    void stopWhileWaitingLaunchesNothing()
    {
        launchReady();
        adapter().end();
        m_bench->source.stop();
        m_bench->time.advance(10min);
        QCOMPARE(m_bench->processes.calls.size(), 1);
        m_bench->source.start();
        QCOMPARE(m_bench->processes.calls.size(), 2);
    }

    void realCompanionMayFloodItsPipe()
    {
        const ProgramCall call { u"/bin/sh"_s,
            { u"-c"_s,
                u"echo '{\"type\":\"ready\"}';"
                "head -c 10000000 /dev/zero | tr '\\0' x | fold -w 1000; echo;"
                "head -c 30000000 /dev/zero | tr '\\0' x; echo;"
                "echo '{\"type\":\"state\",\"title\":\"After\"}'; read -r command;"
                "echo '{\"type\":\"state\",\"title\":\"'$command'\"}'; read -r nothing"_s } };
        FakeAdapterCommand command;
        command.call = call;
        QtAdapterProcesses processes;
        QtWorkQueues queues;
        MediaRemoteSource source(
            { command, processes, m_bench->applications, m_bench->time, m_bench->time, queues });
        QStringList titles;
        source.onSnapshot = [&](const NowPlayingSnapshot& snapshot) { titles << snapshot.track->title; };
        // Counts the turns of the main loop, which goes on meanwhile.
        auto turns = 0;
        QTimer turn;
        connect(&turn, &QTimer::timeout, this, [&] { ++turns; });
        turn.start(0);
        source.start();
        QTRY_COMPARE_WITH_TIMEOUT(titles, QStringList { u"After"_s }, 30'000);
        QVERIFY(turns > 40'000'000 / 65'536);
        source.playPause();
        QTRY_COMPARE(titles, QStringList({ u"After"_s, u"toggle"_s }));
    }

private:
    struct Bench {
        ManualTime time;
        ManualQueues queues;
        FakeApplications applications;
        FakeAdapterCommand command;
        FakeAdapterProcesses processes;
        QList<NowPlayingSnapshot> snapshots;
        int unavailable = 0;
        MediaRemoteSource source { { command, processes, applications, time, time, queues } };

        Bench()
        {
            source.onSnapshot = [this](const NowPlayingSnapshot& snapshot) { snapshots << snapshot; };
            source.onUnavailable = [this] { ++unavailable; };
        }
    };

    [[nodiscard]] FakeAdapterProcess& adapter() const { return *m_bench->processes.current; }

    void say(const QByteArray& bytes)
    {
        adapter().say(bytes);
        m_bench->queues.runAll();
    }

    void launchReady()
    {
        if (m_bench->processes.calls.isEmpty())
            m_bench->source.start();
        adapter().run();
        say("{\"type\":\"ready\"}\n");
    }

    void expectRelaunchAfter(std::chrono::milliseconds delay)
    {
        const auto launches = m_bench->processes.calls.size();
        adapter().end();
        if (delay > 0ms) {
            m_bench->time.advance(delay - 1ms);
            QCOMPARE(m_bench->processes.calls.size(), launches);
        }
        m_bench->time.advance(delay > 0ms ? 1ms : 0ms);
        QCOMPARE(m_bench->processes.calls.size(), launches + 1);
        launchReady();
    }

    [[nodiscard]] QStringList titles() const
    {
        QStringList titles;
        for (const auto& snapshot : m_bench->snapshots)
            titles << (snapshot.track ? snapshot.track->title : QString());
        return titles;
    }

    std::unique_ptr<Bench> m_bench;
};

QTEST_GUILESS_MAIN(MediaRemoteSourceTest)
#include "MediaRemoteSourceTest.moc"
