#include "mediaprotocol/MediaMessage.h"
#include "support/BusService.h"
#include "support/PrivateBus.h"
#include "support/Test.h"
#include "support/TestFolder.h"

#include <QDBusObjectPath>
#include <QDBusVariant>
#include <QTcpServer>
#include <QTimer>

#include <csignal>
#include <sys/stat.h>

namespace {

/// The program under test as a child process, and what it said.
class Adapter {
public:
    explicit Adapter(const QString& bus)
    {
        auto environment = QProcessEnvironment::systemEnvironment();
        environment.insert(u"DBUS_SESSION_BUS_ADDRESS"_s, bus);
        process.setProcessEnvironment(environment);
        process.setProcessChannelMode(QProcess::ForwardedErrorChannel);
        QObject::connect(&process, &QProcess::readyRead, &process, [this] {
            while (process.canReadLine())
                messageReceived(decodeMessage(process.readLine().chopped(1)).value());
        });
        process.start(QStringLiteral(NIMBARROW_MEDIA_ADAPTER), QStringList());
    }

    ~Adapter()
    {
        process.kill();
        process.waitForFinished();
    }
    Q_DISABLE_COPY_MOVE(Adapter)

    void say(const QByteArray& command) { process.write(command + '\n'); }

    /// It hears what `tell` sends at once, however busy the machine is: the bus has all of it by then.
    void hearAtOnce(const QDBusConnection& bus, const std::function<void()>& tell) const
    {
        const auto pid = static_cast<pid_t>(process.processId());
        ::kill(pid, SIGSTOP);
        tell();
        bus.call(QDBusMessage::createMethodCall(
            u"org.freedesktop.DBus"_s, u"/org/freedesktop/DBus"_s, u"org.freedesktop.DBus"_s, u"GetId"_s));
        ::kill(pid, SIGCONT);
    }

    /// What came for the artwork that the last state names.
    [[nodiscard]] QByteArray artwork() const { return artworks.value(state.artworkID.value_or(QString())); }

    QProcess process;
    bool ready = false;
    /// The last state; empty while nothing plays.
    MediaState state;
    bool idle = false;
    int states = 0;
    QHash<QString, QByteArray> artworks;
    int artworkLines = 0;

private:
    void messageReceived(const MediaMessage& message)
    {
        ready = ready || std::holds_alternative<MediaReady>(message);
        if (const auto* const artwork = std::get_if<MediaArtwork>(&message)) {
            artworks.insert(artwork->id, artwork->file);
            ++artworkLines;
        }
        const auto* const said = std::get_if<MediaState>(&message);
        idle = std::holds_alternative<MediaIdle>(message) || (idle && !said);
        states += said ? 1 : 0;
        if (said || idle)
            state = said ? *said : MediaState {};
    }
};

/// A player on the bus that says whatever a test wants it to say, and keeps what it was asked to do.
class FakePlayer final : public BusService {
public:
    FakePlayer(const QString& busAddress, const QString& name)
        : BusService(busAddress, u"org.mpris.MediaPlayer2."_s + name, u"/org/mpris/MediaPlayer2"_s)
    {
    }

    QVariantMap properties { { u"PlaybackStatus"_s, u"Stopped"_s }, { u"Position"_s, qint64(0) } };
    bool refusesVolume = false;
    /// How long it takes for each answer about a property, or to a change of it, in milliseconds.
    QHash<QString, int> delays;
    /// What was asked, such as "Seek 5000000", and how often it was asked what it plays.
    QStringList requests;
    int reads = 0;

    /// Says the changed properties in one signal; or names them without their values.
    void change(const QVariantMap& changed, bool names = false)
    {
        properties.insert(changed);
        auto signal
            = QDBusMessage::createSignal(u"/org/mpris/MediaPlayer2"_s, interface, u"PropertiesChanged"_s);
        signal << u"org.mpris.MediaPlayer2.Player"_s << (names ? QVariantMap() : changed)
               << (names ? changed.keys() : QStringList());
        m_bus.send(signal);
    }

    [[nodiscard]] const QDBusConnection& bus() const { return m_bus; }

    bool handleMessage(const QDBusMessage& message, const QDBusConnection& /*connection*/) override
    {
        const auto arguments = message.arguments();
        if (message.interface() != interface) {
            auto request = message.member();
            for (const auto& argument : arguments) {
                const bool isPath = argument.metaType() == QMetaType::fromType<QDBusObjectPath>();
                request += u' ' + (isPath ? argument.value<QDBusObjectPath>().path() : argument.toString());
            }
            requests += request;
            return m_bus.send(message.createReply());
        }
        const auto property = arguments.value(1).toString();
        QVariantList answer;
        if (message.member() == "Set"_L1) {
            if (refusesVolume)
                return m_bus.send(message.createErrorReply(QDBusError::PropertyReadOnly, u"fixed"_s));
            const auto value = arguments.value(2).value<QDBusVariant>().variant();
            requests += property + u' ' + value.toString();
            QTimer::singleShot(0, this, [this, property, value] { change({ { property, value } }); });
        } else {
            ++reads;
            const auto isOne = message.member() == "Get"_L1;
            answer << (isOne ? QVariant::fromValue(QDBusVariant(properties.value(property))) : properties);
        }
        message.setDelayedReply(true);
        QTimer::singleShot(delays.value(property), this,
            [this, message, answer] { m_bus.send(message.createReply(answer)); });
        return true;
    }

private:
    const QString interface = u"org.freedesktop.DBus.Properties"_s;
};

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

} // namespace

class MediaAdapterTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void choosesAmongTwoPlayersAndForgetsACrashedOne()
    {
        const PrivateBus bus;
        FakePlayer one(bus.address(), u"one"_s);
        one.change(playing(track(u"One"_s)));
        Adapter adapter(bus.address());
        QTRY_COMPARE(adapter.state.title, u"One"_s);
        auto other = std::make_unique<FakePlayer>(bus.address(), u"other"_s);
        other->change(playing(track(u"Other"_s)));
        QTRY_COMPARE(adapter.state.title, u"Other"_s);
        QCOMPARE(adapter.state.pid, QCoreApplication::applicationPid());
        other->change(paused);
        QTRY_COMPARE(adapter.state.title, u"One"_s);
        // Both rest: the one that a person has just paused stays.
        one.change(paused);
        QTRY_VERIFY(!adapter.state.isPlaying);
        QCOMPARE(adapter.state.title, u"One"_s);
        QCOMPARE(adapter.state.rate, 0);
        other->change(playing(track(u"Later"_s)), true);
        QTRY_COMPARE(adapter.state.title, u"Later"_s);
        other.reset();
        QTRY_COMPARE(adapter.state.title, u"One"_s);
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
        // It goes on; there is nothing to ask or to tell of that.
        QTest::qWait(300);
        const auto reads = player.reads;
        QTest::qWait(1500);
        QCOMPARE(player.reads, reads);
        QCOMPARE(adapter.states, 1);

        player.properties[u"Position"_s] = qint64(7'000'000);
        adapter.hearAtOnce(player.bus(), [&] {
            player.change(paused);
            player.change({ { u"Metadata"_s, track(u"B"_s) } });
            player.change({ { u"CanGoNext"_s, false } });
        });
        QTRY_COMPARE(adapter.state.title, u"B"_s);
        QCOMPARE(adapter.states, 2);
        // On a busy machine the answer may come so late that it counts as none; then it is asked for again.
        QTRY_VERIFY(adapter.state.elapsed == 7 || (player.change(paused), false));
        const auto states = adapter.states;
        adapter.hearAtOnce(player.bus(), [&] {
            player.change({ { u"CanGoNext"_s, true } });
            player.change({ { u"PlaybackStatus"_s, u"Stopped"_s } });
        });
        QTRY_VERIFY(adapter.idle);
        QCOMPARE(adapter.states, states);
    }

    void artworkComesFromWhereverItIs()
    {
        const PrivateBus bus;
        const TestFolder folder;
        const auto file = folder.filePath(u"my cover.png"_s);
        const auto url = QUrl::fromLocalFile(file).toString(QUrl::FullyEncoded);
        folder.write(u"my cover.png"_s, "first");
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
                      [&] { return adapter.state.title == title && adapter.artwork() == contents; });
              };
        QVERIFY(artworkFor(u"A"_s, url, "first"));
        QVERIFY(artworkFor(u"the same"_s, url, "first"));
        QCOMPARE(adapter.artworkLines, 1);
        folder.write(u"my cover.png"_s, "second!");
        QVERIFY(artworkFor(u"new contents"_s, url, "second!"));
        QVERIFY(artworkFor(u"path"_s, file, "second!"));
        QCOMPARE(adapter.artworkLines, 2);
        QVERIFY(artworkFor(u"data"_s, u"data:image/png;base64,ZGF0YQ=="_s, "data"));
        QCOMPARE(adapter.artworkLines, 3);

        const auto pipe = folder.filePath(u"pipe"_s);
        QCOMPARE(::mkfifo(pipe.toLocal8Bit().constData(), 0600), 0);
        const auto large = folder.filePath(u"large"_s);
        folder.write(u"large"_s, QByteArray(9'000'000, 'x'));
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
        player.properties[u"Position"_s] = qint64(10'000'000);
        player.change(playing(track(u"A"_s)));
        Adapter adapter(bus.address());
        QTRY_COMPARE(adapter.state.title, u"A"_s);
        const auto answer = [&](const QByteArray& command) {
            player.requests.clear();
            adapter.say(command + "\nnext");
            (void)QTest::qWaitFor([&] { return player.requests.size() > 1; }, 2000);
            player.requests.removeOne(u"Next"_s);
            return player.requests.join(u';');
        };
        QCOMPARE(answer("toggle"), u"PlayPause"_s);
        QCOMPARE(answer("previous"), u"Previous"_s);
        QCOMPARE(answer("seek 30.5"), u"SetPosition /track/1 30500000"_s);
        // Beyond the end would be the next track.
        QCOMPARE(answer("seek 1000"), u"SetPosition /track/1 100000000"_s);
        player.change(playing(track(u"B"_s, {}, u"/0"_s)));
        QTRY_COMPARE(adapter.state.title, u"B"_s);
        QCOMPARE(answer("seek 4.0"), u"Seek -6000000"_s);
        player.change({ { u"CanSeek"_s, false }, { u"Volume"_s, 0.5 } });
        QTRY_COMPARE(adapter.state.volume, 50);
        QCOMPARE(answer("seek 4.0"), QString());
        QCOMPARE(answer("volume 25"), u"Volume 0.25"_s);
        QTRY_COMPARE(adapter.state.volume, 25);
        player.refusesVolume = true;
        adapter.say("volume 70");
        QTRY_VERIFY(!adapter.state.volume);
    }

    void readsAgainWhatAPlayerDoesNotSay()
    {
        const PrivateBus bus;
        FakePlayer player(bus.address(), u"fake"_s);
        player.change(playing(track(u"A"_s)));
        Adapter adapter(bus.address());
        QTRY_COMPARE(adapter.state.duration, 100);
        const auto correct = [&player](int seconds) {
            auto metadata = track(u"A"_s);
            metadata.insert(u"mpris:length"_s, qint64(seconds) * 1'000'000);
            player.properties[u"Metadata"_s] = metadata;
            player.properties[u"Position"_s] = qint64(seconds) * 500'000;
        };
        correct(120);
        player.change(paused);
        QTRY_COMPARE(adapter.state.duration, 120);
        QCOMPARE(adapter.state.elapsed, 60);
        correct(140);
        adapter.say("refresh");
        QTRY_COMPARE(adapter.state.duration, 140);
        QCOMPARE(adapter.state.elapsed, 70);
        correct(160);
        adapter.say("next");
        QTRY_COMPARE(adapter.state.duration, 160);
        QCOMPARE(adapter.state.elapsed, 80);
        // Of what was refused the truth is told, which is what it was before.
        for (const QByteArray command : { "seek 30.0", "toggle" }) {
            const auto states = adapter.states;
            adapter.say(command);
            QTRY_COMPARE(adapter.states, states + 1);
            QCOMPARE(adapter.state.elapsed, 80);
        }
        player.change({ { u"CanSeek"_s, false } });
        QTRY_VERIFY(!adapter.state.canSeek);
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
        QTRY_COMPARE(adapter.state.volume, 50);
        player.delays[u"Volume"_s] = 2500;
        adapter.say("volume 20");
        // Beyond what it is waited for.
        QTest::qWait(2600);
        QTRY_COMPARE(adapter.state.volume, 20);
        player.delays[u"Volume"_s] = 0;
        adapter.say("volume 40");
        QTRY_COMPARE(adapter.state.volume, 40);
    }

    void shortStopBetweenTwoTracksShowsNothing()
    {
        const PrivateBus bus;
        FakePlayer other(bus.address(), u"other"_s);
        other.change(playing(track(u"Other"_s)));
        FakePlayer player(bus.address(), u"fake"_s);
        Adapter adapter(bus.address());
        QTRY_COMPARE(adapter.state.title, u"Other"_s);
        other.change(paused);
        player.change(playing(track(u"A"_s)));
        QTRY_COMPARE(adapter.state.title, u"A"_s);
        const auto states = adapter.states;
        player.change({ { u"PlaybackStatus"_s, u"Stopped"_s }, { u"Metadata"_s, QVariantMap() } });
        QTest::qWait(100);
        player.change({ { u"PlaybackStatus"_s, u"Playing"_s } });
        QTest::qWait(60);
        player.change(playing(track(u"B"_s)));
        QTRY_COMPARE(adapter.state.title, u"B"_s);
        // Nothing of nothing, and nothing of the other one that rests.
        QCOMPARE(adapter.states, states + 1);
        QVERIFY(!adapter.idle);
        player.change({ { u"PlaybackStatus"_s, u"Stopped"_s } });
        QTRY_COMPARE(adapter.state.title, u"Other"_s);
    }

    void chatterDelaysNobody()
    {
        for (const auto itsOwn : { false, true }) {
            const PrivateBus bus;
            FakePlayer other(bus.address(), u"other"_s);
            FakePlayer player(bus.address(), u"fake"_s);
            player.delays[u"Position"_s] = 200;
            Adapter adapter(bus.address());
            QTRY_VERIFY(adapter.idle);
            auto& chatterer = itsOwn ? player : other;
            QTimer chatter;
            connect(&chatter, &QTimer::timeout, this, [&chatterer, value = false]() mutable {
                chatterer.change({ { u"CanGoNext"_s, value = !value } });
            });
            chatter.start(5);
            player.properties[u"Position"_s] = qint64(7'000'000);
            player.change(playing(track(u"A"_s)));
            QTRY_COMPARE(adapter.state.title, u"A"_s);
            QTRY_VERIFY(adapter.state.elapsed >= 7);
        }
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
