#include "linux/media/FakePlayer.h"
#include "support/PrivateBus.h"

#include <QDBusObjectPath>
#include <QDir>
#include <QFile>
#include <QJsonDocument>
#include <QJsonObject>
#include <QProcess>
#include <QTcpServer>
#include <QTemporaryDir>
#include <QTest>
#include <QTimer>

#include <sys/stat.h>
#include <unistd.h>

using namespace nimbarrow;
using namespace Qt::StringLiterals;

namespace {

QProcessEnvironment on(const QString& bus)
{
    auto environment = QProcessEnvironment::systemEnvironment();
    environment.insert(u"DBUS_SESSION_BUS_ADDRESS"_s, bus);
    return environment;
}

/// The program under test as a child process, and what it said.
class Adapter {
public:
    explicit Adapter(const QString& bus, const QStringList& arguments = {})
    {
        process.setProcessEnvironment(on(bus));
        process.setProcessChannelMode(QProcess::ForwardedErrorChannel);
        QObject::connect(&process, &QProcess::readyRead, &process, [this] {
            while (process.canReadLine())
                take(QJsonDocument::fromJson(process.readLine()).object());
        });
        process.start(QStringLiteral(NIMBARROW_MEDIA_ADAPTER), arguments);
    }

    ~Adapter()
    {
        process.kill();
        process.waitForFinished();
    }
    Q_DISABLE_COPY_MOVE(Adapter)

    void say(const QByteArray& command) { process.write(command + '\n'); }
    [[nodiscard]] QString text(const QString& key) const { return state.value(key).toString(); }
    [[nodiscard]] double number(const QString& key) const { return state.value(key).toDouble(-1); }
    [[nodiscard]] bool isPlaying() const { return state.value(u"playing"_s).toBool(); }
    /// What came for the artwork that the last state names.
    [[nodiscard]] QByteArray artwork() const { return artworks.value(text(u"artworkID"_s)); }

    QProcess process;
    bool ready = false;
    /// The last state; empty while nothing plays.
    QJsonObject state;
    bool idle = false;
    int states = 0;
    QHash<QString, QByteArray> artworks;
    int artworkLines = 0;

private:
    void take(const QJsonObject& message)
    {
        const auto type = message.value(u"type"_s);
        if (type == "ready"_L1)
            ready = true;
        if (type == "idle"_L1) {
            idle = true;
            state = {};
        }
        if (type == "state"_L1) {
            idle = false;
            state = message;
            ++states;
        }
        if (type == "artwork"_L1) {
            const auto data = message.value(u"data"_s).toString().toLatin1();
            artworks.insert(message.value(u"id"_s).toString(), QByteArray::fromBase64(data));
            ++artworkLines;
        }
    }
};

/// Two silent tracks, each with a cover of its own beside it, and a real player of them.
class RealPlayer {
public:
    explicit RealPlayer(const QString& bus)
    {
        const QDir plugins(u"/etc/mpv/scripts"_s);
        process.setProcessEnvironment(on(bus));
        process.setProcessChannelMode(QProcess::ForwardedErrorChannel);
        process.start(u"mpv"_s,
            { u"--no-config"_s, u"--no-video"_s, u"--ao=null"_s, u"--idle=yes"_s, u"--really-quiet"_s,
                u"--script="_s + plugins.filePath(u"mpris.so"_s), track(u"one"_s, 60), track(u"two"_s, 90) });
    }

    ~RealPlayer()
    {
        process.kill();
        process.waitForFinished();
    }
    Q_DISABLE_COPY_MOVE(RealPlayer)

    [[nodiscard]] QByteArray cover(const QString& name) const
    {
        QFile file(folder.filePath(name + u"/cover.jpg"_s));
        return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray("no cover");
    }

    QTemporaryDir folder;
    QProcess process;

private:
    [[nodiscard]] QString track(const QString& name, int seconds) const
    {
        const auto path = folder.filePath(name + u"/track.mp3"_s);
        QDir().mkpath(folder.filePath(name));
        const auto ffmpeg = [](const QStringList& arguments) {
            QProcess::execute(
                u"ffmpeg"_s, QStringList { u"-loglevel"_s, u"error"_s, u"-f"_s, u"lavfi"_s } + arguments);
        };
        ffmpeg({ u"-i"_s, u"anullsrc=r=8000"_s, u"-t"_s, QString::number(seconds), u"-metadata"_s,
            u"title="_s + name, u"-metadata"_s, u"artist=Nobody"_s, path });
        const auto color = name == "one"_L1 ? u"color=red:s=16x16"_s : u"color=blue:s=16x16"_s;
        ffmpeg({ u"-i"_s, color, u"-frames:v"_s, u"1"_s, folder.filePath(name + u"/cover.jpg"_s) });
        return path;
    }
};

/// Time on the processor so far, in ticks.
int ticks(qint64 pid)
{
    QFile file(u"/proc/%1/stat"_s.arg(pid));
    if (!file.open(QIODevice::ReadOnly))
        return -1;
    const auto fields = file.readAll().split(' ');
    return fields.value(13).toInt() + fields.value(14).toInt();
}

QVariantMap track(const QString& title, const QString& artwork = {}, const QString& id = u"/track/1"_s)
{
    return { { u"xesam:title"_s, title }, { u"mpris:length"_s, qint64(100'000'000) },
        { u"mpris:artUrl"_s, artwork }, { u"mpris:trackid"_s, QVariant::fromValue(QDBusObjectPath(id)) } };
}

QVariantMap playing(const QVariantMap& metadata)
{
    return { { u"PlaybackStatus"_s, u"Playing"_s }, { u"Metadata"_s, metadata } };
}

const QVariantMap paused { { u"PlaybackStatus"_s, u"Paused"_s } };

void put(const QString& path, const QByteArray& contents)
{
    QFile file(path);
    QVERIFY(file.open(QIODevice::WriteOnly));
    file.write(contents);
}

} // namespace

class MediaAdapterTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void tellsOfARealPlayerAndDrivesIt()
    {
        const PrivateBus bus;
        Adapter adapter(bus.address());
        QTRY_VERIFY(adapter.ready && adapter.idle);

        RealPlayer player(bus.address());
        QTRY_COMPARE_WITH_TIMEOUT(adapter.text(u"title"_s), u"one"_s, 20'000);
        QTRY_VERIFY(adapter.isPlaying());
        QCOMPARE(adapter.text(u"artist"_s), u"Nobody"_s);
        QCOMPARE(adapter.number(u"pid"_s), double(player.process.processId()));
        QVERIFY(qAbs(adapter.number(u"duration"_s) - 60) < 1);
        QCOMPARE(adapter.number(u"volume"_s), 100);
        QTRY_COMPARE(adapter.artwork(), player.cover(u"one"_s));

        adapter.say("toggle");
        QTRY_VERIFY(!adapter.isPlaying());
        QCOMPARE(adapter.number(u"rate"_s), 0);
        adapter.say("seek 42.0");
        QTRY_VERIFY(qAbs(adapter.number(u"elapsed"_s) - 42) < 1);
        adapter.say("volume 30");
        QTRY_COMPARE(adapter.number(u"volume"_s), 30);
        adapter.say("toggle");
        QTRY_VERIFY(adapter.isPlaying());

        adapter.say("next");
        QTRY_COMPARE(adapter.text(u"title"_s), u"two"_s);
        QTRY_VERIFY(adapter.number(u"elapsed"_s) < 5);
        QTRY_COMPARE(adapter.artwork(), player.cover(u"two"_s));
        adapter.say("previous");
        QTRY_COMPARE(adapter.text(u"title"_s), u"one"_s);

        // The player goes on; there is nothing to tell of that.
        const auto states = adapter.states;
        const auto before = ticks(adapter.process.processId());
        QTest::qWait(3000);
        const auto used = ticks(adapter.process.processId()) - before;
        qInfo("The adapter used %d ticks of %ld a second in 3 s.", used, ::sysconf(_SC_CLK_TCK));
        QVERIFY(before >= 0 && used < 10);
        QCOMPARE(adapter.states, states);

        player.process.terminate();
        QTRY_VERIFY(adapter.idle);
    }

    void choosesAmongTwoPlayersAndForgetsACrashedOne()
    {
        const PrivateBus bus;
        RealPlayer real(bus.address());
        Adapter adapter(bus.address());
        QTRY_COMPARE_WITH_TIMEOUT(adapter.text(u"title"_s), u"one"_s, 20'000);

        auto other = std::make_unique<FakePlayer>(bus.address(), u"other"_s);
        other->change(playing(track(u"Other"_s)));
        QTRY_COMPARE(adapter.text(u"title"_s), u"Other"_s);
        QCOMPARE(adapter.number(u"pid"_s), double(QCoreApplication::applicationPid()));
        other->change(paused);
        QTRY_COMPARE(adapter.text(u"title"_s), u"one"_s);
        // Both rest: the one that a person has just paused stays.
        adapter.say("toggle");
        QTRY_VERIFY(!adapter.isPlaying());
        QCOMPARE(adapter.text(u"title"_s), u"one"_s);
        other->invalidate(playing(track(u"Later"_s)));
        QTRY_COMPARE(adapter.text(u"title"_s), u"Later"_s);
        other.reset();
        QTRY_COMPARE(adapter.text(u"title"_s), u"one"_s);
    }

    void oneEventIsOneLine()
    {
        const PrivateBus bus;
        FakePlayer player(bus.address(), u"fake"_s);
        player.change(playing(track(u"A"_s)));
        Adapter adapter(bus.address());
        QTRY_COMPARE(adapter.states, 1);
        // No false word at the start.
        QVERIFY(!adapter.idle);

        player.setPosition(7'000'000);
        player.change(paused);
        player.change({ { u"Metadata"_s, track(u"B"_s) } });
        player.change({ { u"CanGoNext"_s, false } });
        QTRY_COMPARE(adapter.text(u"title"_s), u"B"_s);
        QCOMPARE(adapter.states, 2);
        QCOMPARE(adapter.number(u"elapsed"_s), 7);
        player.change({ { u"CanGoNext"_s, true } });
        player.change({ { u"PlaybackStatus"_s, u"Stopped"_s } });
        QTRY_VERIFY(adapter.idle);
        QCOMPARE(adapter.states, 2);
    }

    void artworkComesFromWhereverItIs()
    {
        const PrivateBus bus;
        const QTemporaryDir folder;
        const auto file = folder.filePath(u"my cover.png"_s);
        const auto url = QUrl::fromLocalFile(file).toString(QUrl::FullyEncoded);
        put(file, "first");
        QTcpServer server;
        QVERIFY(server.listen(QHostAddress::LocalHost));
        int connections = 0;
        connect(&server, &QTcpServer::newConnection, &server, [&connections] { ++connections; });
        const auto remote = u"://127.0.0.1:%1/cover"_s.arg(server.serverPort());

        FakePlayer player(bus.address(), u"fake"_s);
        Adapter adapter(bus.address());
        const auto artworkFor
            = [&](const QString& title, const QString& address, const QByteArray& contents) {
                  player.change(playing(track(title, address)));
                  return QTest::qWaitFor(
                      [&] { return adapter.text(u"title"_s) == title && adapter.artwork() == contents; });
              };
        QVERIFY(artworkFor(u"A"_s, url, "first"));
        QVERIFY(artworkFor(u"the same"_s, url, "first"));
        QCOMPARE(adapter.artworkLines, 1);
        put(file, "second!");
        QVERIFY(artworkFor(u"new contents"_s, url, "second!"));
        QVERIFY(artworkFor(u"path"_s, file, "second!"));
        QCOMPARE(adapter.artworkLines, 2);
        QVERIFY(artworkFor(u"data"_s, u"data:image/png;base64,ZGF0YQ=="_s, "data"));
        QCOMPARE(adapter.artworkLines, 3);

        const auto pipe = folder.filePath(u"pipe"_s);
        QCOMPARE(::mkfifo(pipe.toLocal8Bit().constData(), 0600), 0);
        const auto large = folder.filePath(u"large"_s);
        put(large, QByteArray(9'000'000, 'x'));
        for (const auto& nothing :
            { QString(), u"file:///gone.png"_s, u"file:///dev/zero"_s, u"nonsense:x"_s, u"file://"_s + pipe,
                u"file://"_s + large, u"data:,"_s, u"http"_s + remote, u"https"_s + remote })
            QVERIFY2(artworkFor(u"none:"_s + nothing, nothing, {}), qPrintable(nothing));
        QTRY_VERIFY(artworkFor(u"last"_s, url, "second!"));
        QCOMPARE(adapter.artworkLines, 4);
        // Nobody in this computer or its network is asked for a picture.
        QCOMPARE(connections, 0);
    }

    void seeksAndSetsTheVolumeAsThePlayerAllows()
    {
        const PrivateBus bus;
        FakePlayer player(bus.address(), u"fake"_s);
        player.setPosition(10'000'000);
        player.change(playing(track(u"A"_s)));
        Adapter adapter(bus.address());
        QTRY_COMPARE(adapter.text(u"title"_s), u"A"_s);
        const auto answer = [&](const QByteArray& command) {
            (void)player.takeRequests();
            adapter.say(command + "\nnext");
            QStringList requests;
            (void)QTest::qWaitFor([&] { return (requests += player.takeRequests()).size() > 1; }, 2000);
            requests.removeOne(u"Next"_s);
            return requests.join(u';');
        };
        QCOMPARE(answer("seek 30.5"), u"SetPosition /track/1 30500000"_s);
        // Beyond the end would be the next track.
        QCOMPARE(answer("seek 1000"), u"SetPosition /track/1 100000000"_s);
        player.change(playing(track(u"B"_s, {}, u"/0"_s)));
        QTRY_COMPARE(adapter.text(u"title"_s), u"B"_s);
        QCOMPARE(answer("seek 4.0"), u"Seek -6000000"_s);
        player.change({ { u"CanSeek"_s, false }, { u"Volume"_s, 0.5 } });
        QTRY_COMPARE(adapter.number(u"volume"_s), 50);
        QCOMPARE(answer("seek 4.0"), QString());
        QCOMPARE(answer("volume 25"), u"Volume 0.25"_s);
        QTRY_COMPARE(adapter.number(u"volume"_s), 25);
        player.refuseVolume();
        adapter.say("volume 70");
        QTRY_VERIFY(!adapter.state.contains(u"volume"_s));
    }

    void readsAgainWhatAPlayerDoesNotSay()
    {
        const PrivateBus bus;
        FakePlayer player(bus.address(), u"fake"_s);
        player.change(playing(track(u"A"_s)));
        Adapter adapter(bus.address());
        QTRY_COMPARE(adapter.number(u"duration"_s), 100);
        const auto correct = [&player](int seconds) {
            auto metadata = track(u"A"_s);
            metadata.insert(u"mpris:length"_s, qint64(seconds) * 1'000'000);
            player.changeSilently({ { u"Metadata"_s, metadata } });
            player.setPosition(qint64(seconds) * 500'000);
        };
        correct(120);
        player.change(paused);
        QTRY_COMPARE(adapter.number(u"duration"_s), 120);
        QCOMPARE(adapter.number(u"elapsed"_s), 60);
        correct(140);
        adapter.say("refresh");
        QTRY_COMPARE(adapter.number(u"duration"_s), 140);
        QCOMPARE(adapter.number(u"elapsed"_s), 70);
        correct(160);
        adapter.say("next");
        QTRY_COMPARE(adapter.number(u"duration"_s), 160);
        QCOMPARE(adapter.number(u"elapsed"_s), 80);
        // Of what was refused the truth is told, which is what it was before.
        for (const QByteArray command : { "seek 30.0", "toggle" }) {
            const auto states = adapter.states;
            adapter.say(command);
            QTRY_COMPARE(adapter.states, states + 1);
            QCOMPARE(adapter.number(u"elapsed"_s), 80);
        }
        player.change({ { u"CanSeek"_s, false } });
        QTRY_VERIFY(!adapter.state.value(u"canSeek"_s).toBool(true));
        const auto states = adapter.states;
        adapter.say("seek 30.0");
        QTRY_COMPARE(adapter.states, states + 1);
    }

    void lateAnswerDoesNotFixTheVolume()
    {
        const PrivateBus bus;
        FakePlayer player(bus.address(), u"fake"_s);
        player.change({ { u"Volume"_s, 0.5 } });
        player.change(playing(track(u"A"_s)));
        Adapter adapter(bus.address());
        QTRY_COMPARE(adapter.number(u"volume"_s), 50);
        player.hesitate(u"Volume"_s, 2500);
        adapter.say("volume 20");
        // Beyond what it is waited for.
        QTest::qWait(2600);
        QTRY_COMPARE(adapter.number(u"volume"_s), 20);
        player.hesitate(u"Volume"_s, 0);
        adapter.say("volume 40");
        QTRY_COMPARE(adapter.number(u"volume"_s), 40);
    }

    void shortStopBetweenTwoTracksShowsNothing()
    {
        const PrivateBus bus;
        FakePlayer other(bus.address(), u"other"_s);
        other.change(playing(track(u"Other"_s)));
        FakePlayer player(bus.address(), u"fake"_s);
        Adapter adapter(bus.address());
        QTRY_COMPARE(adapter.text(u"title"_s), u"Other"_s);
        other.change(paused);
        player.change(playing(track(u"A"_s)));
        QTRY_COMPARE(adapter.text(u"title"_s), u"A"_s);
        const auto states = adapter.states;
        player.change({ { u"PlaybackStatus"_s, u"Stopped"_s }, { u"Metadata"_s, QVariantMap() } });
        QTest::qWait(100);
        player.change({ { u"PlaybackStatus"_s, u"Playing"_s } });
        QTest::qWait(60);
        player.change(playing(track(u"B"_s)));
        QTRY_COMPARE(adapter.text(u"title"_s), u"B"_s);
        // Nothing of nothing, and nothing of the other one that rests.
        QCOMPARE(adapter.states, states + 1);
        QVERIFY(!adapter.idle);
        player.change({ { u"PlaybackStatus"_s, u"Stopped"_s } });
        QTRY_COMPARE(adapter.text(u"title"_s), u"Other"_s);
    }

    void chatterDelaysNobody_data()
    {
        QTest::addColumn<bool>("itsOwn");
        QTest::newRow("another player's") << false;
        QTest::newRow("its own") << true;
    }
    void chatterDelaysNobody()
    {
        QFETCH(const bool, itsOwn);
        const PrivateBus bus;
        FakePlayer other(bus.address(), u"other"_s);
        FakePlayer player(bus.address(), u"fake"_s);
        player.hesitate(u"Position"_s, 200);
        Adapter adapter(bus.address());
        QTRY_VERIFY(adapter.idle);
        auto& chatterer = itsOwn ? player : other;
        QTimer chatter;
        connect(&chatter, &QTimer::timeout, this, [&chatterer, value = false]() mutable {
            chatterer.change({ { u"CanGoNext"_s, value = !value } });
        });
        chatter.start(5);
        player.setPosition(7'000'000);
        player.change(playing(track(u"A"_s)));
        QTRY_COMPARE(adapter.text(u"title"_s), u"A"_s);
        QTRY_VERIFY(adapter.number(u"elapsed"_s) >= 7);
    }

    void waitsForItsBusAndEndsWithIt()
    {
        const QTemporaryDir folder;
        const auto address = u"unix:path="_s + folder.filePath(u"bus"_s);
        const Adapter adapter(address);
        QTRY_VERIFY(adapter.ready);
        QCOMPARE(adapter.states, 0);
        QProcess daemon;
        daemon.start(u"dbus-daemon"_s,
            { u"--session"_s, u"--nofork"_s, u"--address="_s + address, u"--print-address=1"_s });
        QVERIFY(daemon.waitForReadyRead());
        {
            FakePlayer player(address, u"late"_s);
            player.change(playing(track(u"A"_s)));
            QTRY_COMPARE_WITH_TIMEOUT(adapter.text(u"title"_s), u"A"_s, 20'000);
        }
        daemon.kill();
        // Whoever started it starts another one.
        QTRY_COMPARE(adapter.process.state(), QProcess::NotRunning);
        daemon.waitForFinished();
    }

    void endsWithItsInput()
    {
        const PrivateBus bus;
        Adapter adapter(bus.address());
        QTRY_VERIFY(adapter.ready);
        adapter.process.closeWriteChannel();
        QTRY_COMPARE(adapter.process.state(), QProcess::NotRunning);
        QCOMPARE(adapter.process.exitStatus(), QProcess::NormalExit);
    }
};

QTEST_GUILESS_MAIN(MediaAdapterTest)
#include "MediaAdapterTest.moc"
