#include "linux/media/PlayerChoice.h"

#include "linux/media/PlayerProcess.h"
#include "support/Test.h"
#include "support/TestFolder.h"

namespace {

constexpr auto playing = PlayerReading::Playback::Playing;
constexpr auto paused = PlayerReading::Playback::Paused;
constexpr auto stopped = PlayerReading::Playback::Stopped;

PlayerCandidate player(
    const QString& name, PlayerReading::Playback playback, quint64 started, const QString& title = {})
{
    return { u"org.mpris.MediaPlayer2."_s + name, playback, started, title };
}

} // namespace

class PlayerChoiceTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void choosesThePlayerAPersonMeans_data()
    {
        const Rows<QList<PlayerCandidate>, QString, QString> row;
        using List = QList<PlayerCandidate>;
        const auto a = player(u"a"_s, playing, 1);
        const auto b = player(u"b"_s, playing, 2);
        const auto pausedA = player(u"a"_s, paused, 1);
        const auto pausedB = player(u"b"_s, paused, 2);

        row("nobody", List {}, u"a"_s, {});
        row("stopped", List { player(u"a"_s, stopped, 1) }, u"a"_s, {});
        row("never played", List { player(u"a"_s, paused, 0) }, {}, u"a"_s);
        row("the later one", List { b, a }, u"a"_s, u"b"_s);
        row("playing beats a later paused one", List { a, pausedB }, u"b"_s, u"a"_s);
        row("stays when paused", List { pausedA, pausedB }, u"a"_s, u"a"_s);
        row("the paused one that played last", List { pausedA, pausedB }, u"gone"_s, u"b"_s);

        const auto integration = player(u"plasma-browser-integration"_s, playing, 1, u"T"_s);
        const auto tab = player(u"firefox.instance_1_7"_s, playing, 2, u"T"_s);
        const auto otherTab = player(u"firefox.instance_1_7"_s, playing, 2, u"U"_s);
        const auto music = player(u"mpv"_s, playing, 2, u"T"_s);
        row("integration before browser", List { tab, integration }, {}, u"plasma-browser-integration"_s);
        row("another title", List { otherTab, integration }, {}, u"firefox.instance_1_7"_s);
        row("no browser", List { music, integration }, {}, u"mpv"_s);
        auto silent = integration;
        silent.playback = stopped;
        row("stopped integration", List { tab, silent }, {}, u"firefox.instance_1_7"_s);
    }
    void choosesThePlayerAPersonMeans()
    {
        const auto [candidates, current, chosen] = Rows<QList<PlayerCandidate>, QString, QString>::current();
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
            writeFile(root + u"proc/"_s + pid + u"/comm"_s, name + '\n');
            writeFile(root + u"proc/"_s + pid + u"/cgroup"_s, "0::" + group + '\n');
        };
        const QByteArray scope = "/user.slice/app-flatpak-org.example.Player-90.scope";
        process(u"90"_s, "bwrap", scope);
        process(u"91"_s, "xdg-dbus-proxy", scope);
        process(u"92"_s, "bwrap", scope);
        process(u"93"_s, "player", scope);
        process(u"94"_s, "helper", scope);
        writeFile(root + u"sys/fs/cgroup"_s + QString::fromUtf8(scope) + u"/cgroup.procs"_s,
            "90\n91\n92\n93\n94\n");
        process(u"70"_s, "xdg-dbus-proxy", "/user.slice/session-2.scope");
        writeFile(root + u"sys/fs/cgroup/user.slice/session-2.scope/cgroup.procs"_s, "60\n70\n93\n");

        QCOMPARE(playerProcess(91, root), 93);
        QCOMPARE(playerProcess(93, root), 93);
        // Who else lives in the session is not the player.
        QCOMPARE(playerProcess(70, root), 70);
        QCOMPARE(playerProcess(1, root), 1);
    }
};

QTEST_GUILESS_MAIN(PlayerChoiceTest)
#include "PlayerChoiceTest.moc"
