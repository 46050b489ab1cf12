#include "nowplaying/MediaRemoteSource.h"

#include "mediaprotocol/AdapterOptions.h"
#include "support/FakeAdapter.h"
#include "support/FakeDesktop.h"
#include "support/ManualQueues.h"
#include "support/ManualTime.h"
#include "support/Test.h"

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
        // It waits until what it has said is read.
        adapter().say("tle\":\"Two\"}\n");
        QVERIFY(adapter().isPaused);
        QCOMPARE(m_bench->snapshots.size(), 2);
        m_bench->queues.runAll();
        QVERIFY(!adapter().isPaused);
        QCOMPARE(titles(), QStringList({ u"One"_s, {}, u"Two"_s }));
        QCOMPARE(m_bench->snapshots.last().date, m_bench->time.wallTime());
        QCOMPARE(m_bench->snapshots.last().app->pid, 0);
    }

    void commandsAreLinesAndLostBeforeReady()
    {
        m_bench->source.start();
        adapter().run();
        m_bench->source.next();
        say("{\"type\":\"ready\"}\n");
        QCOMPARE(adapter().written, QByteArrayList());
        m_bench->source.seek(qQNaN());
        m_bench->source.next();
        QCOMPARE(adapter().written, QByteArrayList { "next\n" });
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

    void companionThatFloodsItsPipeIsStartedAgain_data()
    {
        const Rows<QByteArray, int> row;
        row("lines of nothing", QByteArray(600, '\n'), 2);
        row("states", QByteArray("{\"type\":\"idle\"}\n").repeated(600), 2);
        row("a line without an end", QByteArray(1 << 20, 'x'), 17);
        row("large lines", QByteArray(1 << 20, 'x') + '\n', 160);
    }
    void companionThatFloodsItsPipeIsStartedAgain()
    {
        const auto [slice, slices] = Rows<QByteArray, int>::current();
        launchReady();
        // However long it lived before, the delays grow.
        for (const auto delay : { 1s, 3s, 7s }) {
            m_bench->time.advance(1min);
            for (auto i = 1; i <= slices; ++i) {
                QVERIFY(!adapter().isTerminated);
                say(slice);
            }
            QVERIFY(adapter().isTerminated);
            // It may go on while it ends; nobody listens.
            const auto snapshots = m_bench->snapshots.size();
            say(slice);
            QVERIFY(!adapter().isPaused);
            QCOMPARE(m_bench->snapshots.size(), snapshots);
            expectRelaunchAfter(delay);
        }
        say("{\"type\":\"state\",\"title\":\"After\"}\n");
        QCOMPARE(titles().last(), u"After"_s);
    }

    void busyCompanionIsNoFlood()
    {
        launchReady();
        for (auto second = 0; second < 60; ++second) {
            say(QByteArray("{\"type\":\"idle\"}\n").repeated(20));
            m_bench->time.advance(1s);
        }
        QVERIFY(!adapter().isTerminated);
        QCOMPARE(m_bench->time.pending(), 0);
    }

    void trackKeepsItsIdentityHoweverLongItBecomes()
    {
        launchReady();
        const auto identities = [this](const QByteArrayList& members) {
            m_bench->snapshots.clear();
            for (const auto& member : members)
                say("{\"type\":\"state\",\"title\":\"T\"," + member + "}\n");
            QStringList identities;
            for (const auto& snapshot : std::as_const(m_bench->snapshots))
                identities << snapshot.track->id;
            return identities;
        };
        const auto one = u"T\u001f\u001f\u001f"_s;
        QCOMPARE(identities({ "\"trackID\":\"/1\",\"duration\":9.9", "\"trackID\":\"/1\",\"duration\":20",
                     "\"trackID\":\"/1\",\"duration\":20", "\"trackID\":\"/1\",\"duration\":30" }),
            QStringList(4, one + u'9'));
        QCOMPARE(m_bench->snapshots.last().track->duration, 30.0);
        QCOMPARE(identities({ "\"trackID\":\"/2\",\"duration\":20", "\"duration\":20", "\"duration\":21" }),
            QStringList({ one + u"20"_s, one + u"20"_s, one + u"21"_s }));
        // Without digits after the point, whatever the size of the number.
        QCOMPARE(identities({ "\"artist\":\"A\",\"album\":\"B\",\"duration\":1e21" }),
            QStringList { u"T\u001fA\u001fB\u001f"_s + u"1000000000000000000000"_s });
    }

    void companionLearnsWhetherItMayDownload()
    {
        launchReady();
        QCOMPARE(m_bench->processes.calls.last().arguments, QStringList());
        MediaRemoteSource source({ m_bench->command, m_bench->processes, m_bench->applications, m_bench->time,
            m_bench->time, m_bench->queues, false });
        source.start();
        QCOMPARE(m_bench->processes.calls.last().arguments, QStringList { adapteroptions::withoutNetwork });
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
