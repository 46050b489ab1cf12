#include "linux/media/PlayerChoice.h"

#include "linux/media/PlayerProcess.h"

#include <QDir>
#include <QFile>
#include <QTemporaryDir>
#include <QTest>

using namespace nimbarrow;
using namespace Qt::StringLiterals;

namespace {

constexpr auto playing = PlayerReading::Playback::Playing;
constexpr auto paused = PlayerReading::Playback::Paused;
constexpr auto stopped = PlayerReading::Playback::Stopped;

PlayerCandidate player(
    const QString& name, PlayerReading::Playback playback, quint64 started, const QString& title = {})
{
    return { u"org.mpris.MediaPlayer2."_s + name, playback, started, title };
}

void put(const QString& path, const QByteArray& contents)
{
    QDir().mkpath(path.section(u'/', 0, -2));
    QFile file(path);
    QVERIFY(file.open(QIODevice::WriteOnly));
    file.write(contents);
}

} // namespace

class PlayerChoiceTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void choosesThePlayerAPersonMeans_data()
    {
        QTest::addColumn<QList<PlayerCandidate>>("candidates");
        QTest::addColumn<QString>("current");
        QTest::addColumn<QString>("chosen");
        using List = QList<PlayerCandidate>;
        const auto a = player(u"a"_s, playing, 1);
        const auto b = player(u"b"_s, playing, 2);
        const auto pausedA = player(u"a"_s, paused, 1);
        const auto pausedB = player(u"b"_s, paused, 2);

        QTest::newRow("nobody") << List {} << u"a"_s << QString();
        QTest::newRow("stopped") << List { player(u"a"_s, stopped, 1) } << u"a"_s << QString();
        QTest::newRow("never played") << List { player(u"a"_s, paused, 0) } << QString() << u"a"_s;
        QTest::newRow("the later one") << List { b, a } << u"a"_s << u"b"_s;
        QTest::newRow("playing beats a later paused one") << List { a, pausedB } << u"b"_s << u"a"_s;
        QTest::newRow("stays when paused") << List { pausedA, pausedB } << u"a"_s << u"a"_s;
        QTest::newRow("the paused one that played last") << List { pausedA, pausedB } << u"gone"_s << u"b"_s;

        const auto integration = player(u"plasma-browser-integration"_s, playing, 1, u"T"_s);
        const auto tab = player(u"firefox.instance_1_7"_s, playing, 2, u"T"_s);
        const auto otherTab = player(u"firefox.instance_1_7"_s, playing, 2, u"U"_s);
        const auto music = player(u"mpv"_s, playing, 2, u"T"_s);
        QTest::newRow("integration before browser")
            << List { tab, integration } << QString() << u"plasma-browser-integration"_s;
        QTest::newRow("another title")
            << List { otherTab, integration } << QString() << u"firefox.instance_1_7"_s;
        QTest::newRow("no browser") << List { music, integration } << QString() << u"mpv"_s;
        auto silent = integration;
        silent.playback = stopped;
        QTest::newRow("stopped integration")
            << List { tab, silent } << QString() << u"firefox.instance_1_7"_s;
    }

    void choosesThePlayerAPersonMeans()
    {
        QFETCH(QList<PlayerCandidate>, candidates);
        QFETCH(QString, current);
        QFETCH(QString, chosen);
        const auto prefix = u"org.mpris.MediaPlayer2."_s;
        QCOMPARE(choosePlayer(candidates, prefix + current), chosen.isEmpty() ? chosen : prefix + chosen);
    }

    void proxiesAreNoPlayers()
    {
        QVERIFY(isPlayerName(u"org.mpris.MediaPlayer2.mpv"_s));
        QVERIFY(isPlayerName(u"org.mpris.MediaPlayer2.vlc.instance42"_s));
        QVERIFY(!isPlayerName(u"org.mpris.MediaPlayer2.playerctld"_s));
        QVERIFY(!isPlayerName(u"org.mpris.MediaPlayer2.kdeconnect.mpris_000001"_s));
        QVERIFY(!isPlayerName(u"org.mpris.MediaPlayer2.GSConnect.PhoneSpotify"_s));
        QVERIFY(!isPlayerName(u"org.mpris.MediaPlayer2"_s));
        QVERIFY(!isPlayerName(u"org.mpris.MediaPlayer2Extra.x"_s));
    }

    void findsThePlayerBehindASandboxProxy()
    {
        const QTemporaryDir folder;
        const auto root = folder.path() + u'/';
        const auto process = [&root](const QString& pid, const QByteArray& name, const QByteArray& group) {
            put(root + u"proc/"_s + pid + u"/comm"_s, name + '\n');
            put(root + u"proc/"_s + pid + u"/cgroup"_s, "0::" + group + '\n');
        };
        const QByteArray scope = "/user.slice/app-flatpak-org.example.Player-90.scope";
        process(u"90"_s, "bwrap", scope);
        process(u"91"_s, "xdg-dbus-proxy", scope);
        process(u"92"_s, "bwrap", scope);
        process(u"93"_s, "player", scope);
        process(u"94"_s, "helper", scope);
        put(root + u"sys/fs/cgroup"_s + QString::fromUtf8(scope) + u"/cgroup.procs"_s,
            "90\n91\n92\n93\n94\n");
        process(u"70"_s, "xdg-dbus-proxy", "/user.slice/session-2.scope");
        put(root + u"sys/fs/cgroup/user.slice/session-2.scope/cgroup.procs"_s, "60\n70\n93\n");

        QCOMPARE(playerProcess(91, root), 93);
        QCOMPARE(playerProcess(93, root), 93);
        // Who else lives in the session is not the player.
        QCOMPARE(playerProcess(70, root), 70);
        QCOMPARE(playerProcess(1, root), 1);
    }
};

QTEST_GUILESS_MAIN(PlayerChoiceTest)
#include "PlayerChoiceTest.moc"
