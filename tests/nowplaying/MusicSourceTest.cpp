#include "nowplaying/MusicSource.h"

#include "support/FakeMusicApp.h"
#include "support/FakeScripting.h"
#include "support/ManualQueues.h"
#include "support/ManualTime.h"
#include "support/Pictures.h"
#include "support/Test.h"

class MusicSourceTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void init()
    {
        m_bench = std::make_unique<Bench>();
        m_bench->app.state = MusicApp::Running { 77, u"Музика"_s, {} };
        answer(u"playing"_s);
        m_bench->scripting.answers[u"raw data"_s] = { encodedPicture({ 800, 400 }) };
    }
    void cleanup() { m_bench.reset(); }

    void playingTrackIsDeliveredWithArtworkAndVolume()
    {
        start();
        QCOMPARE(m_bench->log, QStringList({ u"artwork ID1 600x300"_s, u"playing One"_s, u"volume 35"_s }));
        const auto& snapshot = m_bench->last;
        QCOMPARE(*snapshot.track, (NowPlayingTrack { u"ID1"_s, u"One"_s, u"Artist"_s, u"Album"_s, 200.5 }));
        QCOMPARE(snapshot.elapsed, 12.5);
        QCOMPARE(snapshot.rate, 1.0);
        QCOMPARE(snapshot.artworkID, u"ID1"_s);
        QCOMPARE(snapshot.app->pid, 77);
        QCOMPARE(snapshot.app->bundleID, u"com.apple.Music"_s);
        QCOMPARE(snapshot.app->name, u"Музика"_s);
        QVERIFY(!snapshot.volume);
    }

    void artworkIsFetchedOnceForEachTrack()
    {
        start();
        m_bench->scripting.answers[u"raw data"_s] = { QString() };
        play(u"paused"_s);
        QCOMPARE(m_bench->log, QStringList({ u"paused One"_s, u"volume 35"_s }));
        // After it has quit, the same track is a new one.
        m_bench->app.quit();
        m_bench->queues.runAll();
        m_bench->app.state = MusicApp::Running {};
        play(u"playing"_s);
        QCOMPARE(m_bench->log, QStringList({ u"artwork ID1 0x0"_s, u"playing One"_s, u"volume 35"_s }));
        QCOMPARE(m_bench->last.app->name, u"Music"_s);
    }

    void requestsDuringAReadMakeOneMore()
    {
        m_bench->source.start();
        for (auto i = 0; i < 10; ++i)
            m_bench->app.play();
        m_bench->queues.runAll();
        QCOMPARE(m_bench->log.count(u"playing One"_s), 2);
    }

    void stoppedOrGoneIsIdle()
    {
        start();
        answer(u"stopped"_s);
        play(u"stopped"_s);
        QCOMPARE(m_bench->log, QStringList({ u"idle"_s, u"volume 35"_s }));
        m_bench->log.clear();
        m_bench->app.quit();
        QCOMPARE(m_bench->log, QStringList({ u"idle"_s, u"no volume"_s }));
    }

    void oddListsAreMadeSaneOrDropped()
    {
        m_bench->scripting.answers[u"player state"_s] = { u"playing"_s, u"One"_s };
        start();
        QCOMPARE(m_bench->log, QStringList());
        m_bench->scripting.answers[u"player state"_s]
            = { u"playing"_s, {}, 7, {}, u"long"_s, -3, u"loud"_s, u"ID1"_s };
        m_bench->app.play();
        m_bench->queues.runAll();
        QCOMPARE(m_bench->log.last(), u"volume 50"_s);
        QCOMPARE(*m_bench->last.track, (NowPlayingTrack { u"ID1"_s, {}, u"7"_s, {}, 0 }));
        QCOMPARE(m_bench->last.elapsed, 0.0);
    }

    void commandsAreScripts()
    {
        using Command = std::function<void(MusicSource&)>;
        const QList<std::pair<Command, QString>> rows {
            { [](auto& source) { source.playPause(); }, u"to playpause"_s },
            { [](auto& source) { source.next(); }, u"to next track"_s },
            { [](auto& source) { source.previous(); }, u"to previous track"_s },
            { [](auto& source) { source.seek(42); }, u"to set player position to 42.0"_s },
            { [](auto& source) { source.setVolume(47.6); }, u"to set sound volume to 48"_s },
            { [](auto& source) { source.setVolume(-3); }, u"to set sound volume to 0"_s },
        };
        for (const auto& [command, end] : rows) {
            init();
            command(m_bench->source);
            m_bench->queues.runAll();
            QCOMPARE(m_bench->scripting.scripts.first(), u"tell application \"Music\" "_s + end);
            // What changes the track is followed by a reading.
            QCOMPARE(m_bench->log.contains(u"playing One"_s), !end.contains(u"to set"_s));
            m_bench->app.state.reset();
            m_bench->scripting.scripts.clear();
            command(m_bench->source);
            m_bench->queues.runAll();
            QCOMPARE(m_bench->scripting.scripts, QStringList());
        }
    }

    void stoppedSourceIsDeaf()
    {
        start();
        m_bench->source.stop();
        m_bench->log.clear();
        m_bench->app.play();
        m_bench->app.quit();
        m_bench->queues.runAll();
        QCOMPARE(m_bench->log, QStringList());
    }

private:
    struct Bench {
        ManualTime time;
        ManualQueues queues;
        FakeMusicApp app;
        FakeScripting scripting;
        /// Everything that the source has told, in order.
        QStringList log;
        NowPlayingSnapshot last;
        MusicSource source { { app, scripting, time, queues } };

        Bench()
        {
            source.onSnapshot = [this](const NowPlayingSnapshot& snapshot) {
                last = snapshot;
                const auto state = snapshot.isPlaying ? u"playing "_s : u"paused "_s;
                log << (snapshot.track ? state + snapshot.track->title : u"idle"_s);
            };
            source.onArtwork = [this](const QString& id, const QImage& image) {
                log << u"artwork %1 %2x%3"_s.arg(id).arg(image.width()).arg(image.height());
            };
            source.onVolume = [this](std::optional<double> volume) {
                log << (volume ? u"volume %1"_s.arg(*volume) : u"no volume"_s);
            };
        }
    };

    void answer(const QString& state)
    {
        m_bench->scripting.answers[u"player state"_s]
            = { state, u"One"_s, u"Artist"_s, u"Album"_s, 200.5, 12.5, 35, u"ID1"_s };
    }

    void start()
    {
        m_bench->source.start();
        m_bench->queues.runAll();
    }

    void play(const QString& state)
    {
        answer(state);
        m_bench->log.clear();
        m_bench->app.play();
        m_bench->queues.runAll();
    }

    std::unique_ptr<Bench> m_bench;
};

QTEST_GUILESS_MAIN(MusicSourceTest)
#include "MusicSourceTest.moc"
