#include "nowplaying/NowPlayingModel.h"

#include "preferences/L10n.h"
#include "support/Pictures.h"
#include "support/PlayerFixture.h"
#include "support/Test.h"

namespace {

constexpr qint32 player = 100;
constexpr qint32 music = 200;

} // namespace

class NowPlayingModelTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void init()
    {
        m_fixture = std::make_unique<PlayerFixture>();
        QImage icon(8, 8, QImage::Format_RGB32);
        icon.fill(Qt::green);
        m_fixture->applications.processes = { { player, { u"Tunes"_s, u"org.tunes"_s, 1 } },
            { music, { u"Music"_s, u"com.apple.Music"_s, 2 } } };
        m_fixture->applications.icons[u"org.tunes"_s] = icon;
        model().onTrackChanged = [this](const NowPlayingTrack& track, const QImage& image) {
            m_announced << u"%1 %2"_s.arg(track.title).arg(image.width());
        };
        m_announced.clear();
        m_fixture->start();
    }
    void cleanup() { m_fixture.reset(); }

    void tracksAreAnnouncedFromTheSecondOn()
    {
        state({ { u"title"_s, u"One"_s } });
        QCOMPARE(m_announced, QStringList());
        artwork(u"two"_s, 20);
        state({ { u"title"_s, u"Two"_s }, { u"artworkID"_s, u"two"_s } });
        state({ { u"title"_s, u"Two"_s }, { u"artworkID"_s, u"two"_s }, { u"playing"_s, true } });
        m_fixture->say("{\"type\":\"idle\"}");
        QVERIFY(!model().hasTrack());
        state({ { u"title"_s, u"Two"_s } });
        QCOMPARE(m_announced, QStringList { u"Two 20"_s });
        // Without artwork it is the program's icon.
        state({ { u"title"_s, u"Three"_s } });
        state({ { u"title"_s, u"Four"_s }, { u"pid"_s, 999 } });
        QCOMPARE(m_announced, QStringList({ u"Two 20"_s, u"Three 8"_s, u"Four 0"_s }));
    }

    void programIsNamedAndComesToTheFront()
    {
        state({});
        QCOMPARE(model().appName(), u"Tunes"_s);
        QCOMPARE(model().app()->bundleID, u"org.tunes"_s);
        model().showApp();
        QCOMPARE(m_fixture->applications.activated,
            QList<RunningApplication> { m_fixture->applications.processes[player] });
        L10n::setCurrent(L10n::Ukrainian);
        state({ { u"pid"_s, 999 } });
        QCOMPARE(model().appName(), u"Плеєр"_s);
        L10n::setCurrent(L10n::English);
        model().showApp();
        QCOMPARE(m_fixture->applications.activated.size(), 1);
    }

    void positionFollowsTheClockWithinTheTrack()
    {
        const struct {
            const char* name;
            bool playing;
            double elapsed;
            double rate;
            double duration;
            double position;
        } rows[] = {
            { "paused", false, 30, 1, 200, 30 },
            { "playing", true, 30, 1, 200, 40 },
            { "at double speed", true, 30, 2, 200, 50 },
            { "backwards", true, 5, -1, 200, 0 },
            { "beyond the end", true, 195, 1, 200, 200 },
            { "before the beginning", false, -5, 0, 200, 0 },
            { "of unknown length", true, 30, 1, 0, 0 },
            { "absurd", true, 1e308, 1e308, 200, 200 },
        };
        for (const auto& row : rows) {
            state({ { u"playing"_s, row.playing }, { u"elapsed"_s, row.elapsed }, { u"rate"_s, row.rate },
                { u"duration"_s, row.duration } });
            m_fixture->time.advance(10s);
            QVERIFY2(model().position() == row.position, row.name);
        }
    }

    void seekStaysWithinTheTrack()
    {
        model().seek(5);
        state({ { u"duration"_s, 200 } });
        const QSignalSpy moved(&model(), &NowPlayingModel::positionChanged);
        model().seek(-5);
        QCOMPARE(model().position(), 0.0);
        model().seek(210);
        QCOMPARE(model().position(), 200.0);
        model().seek(qQNaN());
        QCOMPARE(m_fixture->adapter().written, QByteArrayList({ "seek 0.0\n", "seek 200.0\n" }));
        QCOMPARE(moved.size(), 2);
        // What cannot be sought stays where it is.
        state({ { u"duration"_s, 200 }, { u"canSeek"_s, false } });
        model().seek(50);
        QCOMPARE(model().position(), 0.0);
        QCOMPARE(m_fixture->adapter().written.size(), 2);
    }

    void artworkShowsWhenItComes()
    {
        state({ { u"artworkID"_s, u"a"_s } });
        QVERIFY(model().artwork().isNull());
        artwork(u"b"_s, 10);
        QVERIFY(model().artwork().isNull());
        artwork(u"a"_s, 20);
        QCOMPARE(model().artwork().width(), 20);
        const QSignalSpy changed(&model(), &NowPlayingModel::artworkChanged);
        state({ { u"artworkID"_s, u"a"_s }, { u"playing"_s, true } });
        QCOMPARE(changed.size(), 0);
        state({ { u"artworkID"_s, u"b"_s } });
        QCOMPARE(model().artwork().width(), 10);
        state({});
        QVERIFY(model().artwork().isNull());
    }

    void tenthArtworkForgetsTheOthers()
    {
        for (auto i = 0; i < 9; ++i)
            artwork(QString::number(i), 10);
        state({ { u"artworkID"_s, u"0"_s } });
        QVERIFY(!model().artwork().isNull());
        artwork(u"9"_s, 10);
        state({ { u"artworkID"_s, u"0"_s }, { u"playing"_s, true } });
        QVERIFY(model().artwork().isNull());
        state({ { u"artworkID"_s, u"9"_s } });
        QVERIFY(!model().artwork().isNull());
    }

    void volumeOfAPlayerThatTellsItGoesBackToIt()
    {
        state({ { u"volume"_s, 30 } });
        QCOMPARE(model().volume(), 30.0);
        model().setVolume(150);
        QCOMPARE(model().volume(), 100.0);
        model().setVolume(qQNaN());
        state({});
        QVERIFY(!model().volume());
        // What tells none is not told one.
        model().setVolume(50);
        QVERIFY(!model().volume());
        QCOMPARE(m_fixture->adapter().written, QByteArrayList { "volume 100\n" });
    }

    void volumeOfMusicIsReadAndSetByScript()
    {
        m_fixture->musicApp.state = MusicApp::Running { music, u"Music"_s, {} };
        m_fixture->scripting.answers[u"get sound volume"_s] = { 40 };
        state({ { u"pid"_s, music } });
        QCOMPARE(model().volume(), 40.0);
        m_fixture->scripting.answers[u"get sound volume"_s] = { 45 };
        model().refresh();
        m_fixture->queues.runAll();
        QCOMPARE(model().volume(), 45.0);
        model().setVolume(150);
        m_fixture->queues.runAll();
        QCOMPARE(model().volume(), 100.0);
        QVERIFY(m_fixture->scripting.scripts.last().endsWith(u"set sound volume to 100"_s));
        QCOMPARE(m_fixture->adapter().written, QByteArrayList { "refresh\n" });
        state({});
        QVERIFY(!model().volume());
    }

    void withoutTheCompanionMusicServesForGood()
    {
        state({ { u"volume"_s, 30 } });
        m_fixture->command.call.reset();
        m_fixture->adapter().end();
        m_fixture->time.advance(1s);
        QCOMPARE(model().sourceKind(), NowPlayingModel::SourceKind::Music);
        QVERIFY(!model().hasTrack() && !model().volume());

        m_fixture->musicApp.state = MusicApp::Running { music, u"Music"_s, {} };
        m_fixture->scripting.answers[u"player state"_s]
            = { u"playing"_s, u"One"_s, {}, {}, 200, 10, 35, u"ID1"_s };
        model().refresh();
        m_fixture->queues.runAll();
        QCOMPARE(model().track()->title, u"One"_s);
        QCOMPARE(model().volume(), 35.0);
        m_fixture->scripting.error = ScriptResult::Error { true, {} };
        model().refresh();
        m_fixture->queues.runAll();
        QVERIFY(model().isPermissionDenied() && model().hasTrack());
        // Until a script runs again.
        m_fixture->scripting.error.reset();
        model().refresh();
        m_fixture->queues.runAll();
        QVERIFY(!model().isPermissionDenied());
        QCOMPARE(m_fixture->processes.calls.size(), 1);
    }

private:
    [[nodiscard]] NowPlayingModel& model() const { return m_fixture->model; }

    void state(QJsonObject members)
    {
        members.insert(u"type"_s, u"state"_s);
        const auto now = static_cast<double>(m_fixture->time.wallTime().toMSecsSinceEpoch()) / 1000;
        const QHash<QString, QJsonValue> usual { { u"title"_s, u"One"_s }, { u"pid"_s, player },
            { u"timestamp"_s, now } };
        for (auto member = usual.cbegin(); member != usual.cend(); ++member) {
            if (!members.contains(member.key()))
                members.insert(member.key(), member.value());
        }
        m_fixture->say(members);
    }

    void artwork(const QString& id, int side)
    {
        const auto data = QString::fromLatin1(encodedPicture({ side, side }).toBase64());
        m_fixture->say(QJsonObject { { u"type"_s, u"artwork"_s }, { u"id"_s, id }, { u"data"_s, data } });
    }

    std::unique_ptr<PlayerFixture> m_fixture;
    QStringList m_announced;
};

QTEST_GUILESS_MAIN(NowPlayingModelTest)
#include "NowPlayingModelTest.moc"
