#include "mediaprotocol/LineCutter.h"
#include "mediaprotocol/MediaCommand.h"
#include "mediaprotocol/MediaMessage.h"
#include "support/Test.h"

#include <QTimeZone>

#include <limits>

namespace {

using Verb = MediaCommand::Verb;

MediaState stateWith(const QByteArray& members)
{
    const auto message = decodeMessage("{\"type\":\"state\"," + members + '}');
    const auto* state = message ? std::get_if<MediaState>(&*message) : nullptr;
    MediaState none;
    none.pid = -1;
    return state != nullptr ? *state : none;
}

MediaState fullState()
{
    MediaState state;
    state.pid = 42;
    state.title = u"Тиша \U0001F3B5 \"x\"\\"_s;
    state.artist = u"A"_s;
    state.album = u"B"_s;
    state.trackID = u"/track/1"_s;
    state.duration = 187.9;
    state.isPlaying = true;
    state.elapsed = 12.5;
    state.rate = 1.5;
    state.timestamp = QDateTime::fromMSecsSinceEpoch(1'700'000'000'257, QTimeZone::utc());
    state.canSeek = false;
    state.artworkID = u"art"_s;
    state.volume = 33.3;
    return state;
}

} // namespace

/// What one program writes is what the other one reads, and nothing else is read as something.
class MediaProtocolTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void messagesComeBackAsTheyWere()
    {
        const QList<MediaMessage> messages { MediaReady {}, MediaIdle {}, fullState(), MediaState {},
            MediaArtwork { u"id"_s, QByteArray("\0\xff\n{", 4) }, MediaArtwork { u"id"_s, {} } };
        for (const auto& message : messages) {
            LineCutter lines(longestMessage);
            const auto cut = lines.add(encode(message));
            QCOMPARE(cut.size(), 1);
            const auto read = decodeMessage(cut[0]);
            QVERIFY2(read && *read == message, cut[0].constData());
        }
    }

    void commandsComeBackAsTheyWere()
    {
        const QList<std::pair<MediaCommand, QByteArray>> rows {
            { { Verb::Toggle }, "toggle\n" },
            { { Verb::Next }, "next\n" },
            { { Verb::Previous }, "previous\n" },
            { { Verb::Refresh }, "refresh\n" },
            { { Verb::Seek, 42 }, "seek 42.0\n" },
            { { Verb::Seek, 0.1 + 0.2 }, "seek 0.30000000000000004\n" },
            { { Verb::Seek, 0.00005 }, "seek 0.00005\n" },
            { { Verb::Seek, 1e7 }, "seek 10000000.0\n" },
            { { Verb::Volume, 48 }, "volume 48\n" },
        };
        for (const auto& [command, line] : rows) {
            QCOMPARE(encode(command), line);
            QVERIFY(decodeCommand(line.chopped(1)) == command);
        }
    }

    void commandsStayWithinTheirRange()
    {
        QCOMPARE(encode(MediaCommand { Verb::Volume, 47.6 }), "volume 48\n");
        QCOMPARE(encode(MediaCommand { Verb::Volume, 150 }), "volume 100\n");
        QCOMPARE(encode(MediaCommand { Verb::Seek, -3 }), "seek 0.0\n");
        QCOMPARE(encode(MediaCommand { Verb::Seek, qQNaN() }), "");
        const auto is = [](QByteArrayView line, Verb verb, double value) {
            return decodeCommand(line) == MediaCommand { verb, value };
        };
        QVERIFY(is("next\r", Verb::Next, 0));
        QVERIFY(is("seek 1e-05", Verb::Seek, 1e-5));
        QVERIFY(is("seek -3", Verb::Seek, 0));
        QVERIFY(is("seek 1e300", Verb::Seek, 1e9));
        QVERIFY(is("volume 150", Verb::Volume, 100));
        for (const auto* const line : { "", "toggl", "toggle now", "seek", "seek ", "seek nan", "seek inf",
                 "seek 1e400", "seek 4 2", "volume", "volume loud", "Next" })
            QVERIFY2(!decodeCommand(line), line);
    }

    void linesComeWholeHoweverTheBytesCome()
    {
        const QByteArray bytes = "{\"a\":1}\n\n{\"b\":2}\nabcd\nabcde\nend\nx";
        const QByteArrayList expected { "{\"a\":1}", "", "{\"b\":2}", "abcd", "abcde", "end" };
        for (qsizetype piece = 1; piece <= bytes.size(); ++piece) {
            LineCutter lines(7);
            QByteArrayList cut;
            for (qsizetype at = 0; at < bytes.size(); at += piece)
                cut += lines.add(bytes.mid(at, piece));
            QCOMPARE(cut, expected);
            QCOMPARE(lines.kept(), 1);
            QVERIFY(!lines.hasDropped());
        }
    }

    void lineBeyondTheBoundIsDroppedAndNotKept()
    {
        LineCutter lines(1000);
        QCOMPARE(lines.add(QByteArray(1000, 'x') + '\n').size(), 1);
        QVERIFY(!lines.hasDropped());
        for (auto i = 0; i < 20; ++i) {
            QVERIFY(lines.add(QByteArray(999, 'x')).isEmpty());
            QVERIFY(lines.kept() <= 1000);
        }
        QVERIFY(lines.hasDropped());
        QCOMPARE(lines.add("end of it\nnext\n"), QByteArrayList { "next" });
    }

    void whatIsNoMessageIsDropped()
    {
        for (const auto& line : { ""_ba, R"({"type":"ready")"_ba, R"(["ready"])"_ba, R"({"title":"Song"})"_ba,
                 R"({"type":"lyrics"})"_ba, R"({"type":1})"_ba,
                 "{\"type\":\"state\",\"title\":\"\xff\xfe\"}"_ba, QByteArray(100'000, '['),
                 R"({"type":"artwork","id":"a"})"_ba, R"({"type":"artwork","data":"QUJD"})"_ba,
                 R"({"type":"artwork","id":"a","data":"QU*D"})"_ba })
            QVERIFY2(!decodeMessage(line), line.first(std::min<qsizetype>(line.size(), 60)).constData());
    }

    void oddMembersBecomeSane()
    {
        MediaState song;
        song.title = u"Song"_s;
        QCOMPARE(stateWith(R"("title":"Song")"), song);
        QCOMPARE(stateWith(R"("title":"Song","artist":["A"],"album":{},"pid":"7","duration":"9","elapsed":"1",
            "rate":"1","volume":"5","playing":"true","canSeek":0,"timestamp":"1","artworkID":5,"trackID":1)"),
            song);
        QCOMPARE(
            stateWith(R"("title":"Song","pid":null,"duration":null,"volume":null,"timestamp":null)"), song);
        QCOMPARE(stateWith(R"("playing":true)").rate, 1.0);
        QCOMPARE(stateWith(R"("duration":-5,"elapsed":-5)").duration, 0.0);
        QCOMPARE(stateWith(R"("duration":-5,"elapsed":-5)").elapsed, -5.0);
        QCOMPARE(stateWith(R"("pid":4294967297)").pid, 0);
        QCOMPARE(stateWith(R"("pid":4.5)").pid, 0);
        QCOMPARE(stateWith(R"("pid":2147483647)").pid, 2147483647);
        QCOMPARE(stateWith(R"("volume":130)").volume, 100.0);
        QCOMPARE(stateWith(R"("volume":-1)").volume, 0.0);
        for (const QByteArray number : { "1e999", "-1e999", "NaN", "Infinity", "1e308", "-1e308" }) {
            const auto state = stateWith("\"duration\":" + number + ",\"elapsed\":" + number
                + ",\"rate\":" + number + ",\"timestamp\":" + number);
            QVERIFY(qIsFinite(state.duration) && state.duration >= 0);
            QVERIFY(qIsFinite(state.elapsed) && qIsFinite(state.rate) && !state.timestamp);
        }
    }
};

QTEST_GUILESS_MAIN(MediaProtocolTest)
#include "MediaProtocolTest.moc"
