#include "nowplaying/AdapterMessage.h"

#include "nowplaying/AdapterLines.h"
#include "nowplaying/DecimalText.h"

#include <QBuffer>
#include <QTest>
#include <QTimeZone>

#include <limits>

using namespace Qt::StringLiterals;
using namespace nimbarrow;

namespace {

QByteArray picture(QSize size)
{
    QImage image(size, QImage::Format_RGB32);
    image.fill(Qt::red);
    QByteArray png;
    QBuffer buffer(&png);
    buffer.open(QBuffer::WriteOnly);
    image.save(&buffer, "PNG");
    return png.toBase64();
}

template <typename Message>
std::optional<Message> readAs(const QByteArray& line)
{
    const auto message = readAdapterMessage(line);
    const auto* wanted = message ? std::get_if<Message>(&*message) : nullptr;
    return wanted != nullptr ? std::optional(*wanted) : std::nullopt;
}

adaptermessage::State stateWith(const QByteArray& members)
{
    const auto state = readAs<adaptermessage::State>("{\"type\":\"state\"," + members + '}');
    return state.value_or(adaptermessage::State { -1, {}, {}, {}, {}, {}, {}, {} });
}

} // namespace

/// From the companion's bytes to what they mean.
class AdapterMessageTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void linesComeWholeHoweverTheBytesCome()
    {
        AdapterLines lines;
        QCOMPARE(lines.add("{\"a\":1}\n{\"b\":"), QByteArrayList { "{\"a\":1}" });
        QCOMPARE(lines.add("2}"), QByteArrayList());
        QCOMPARE(lines.add("\n\nx"), QByteArrayList({ "{\"b\":2}", "" }));
        QCOMPARE(lines.kept(), 1);
    }

    void lineBeyondTheBoundIsDroppedAndNotKept()
    {
        AdapterLines lines;
        QVERIFY(lines.add(QByteArray(AdapterLines::longest, 'x')).isEmpty());
        QCOMPARE(lines.add("\n").value(0).size(), AdapterLines::longest);
        for (auto i = 0; i < 20; ++i) {
            QVERIFY(lines.add(QByteArray(1'000'000, 'x')).isEmpty());
            QVERIFY(lines.kept() <= AdapterLines::longest);
        }
        QCOMPARE(lines.kept(), 0);
        QCOMPARE(lines.add("end of it\nnext\n"), QByteArrayList { "next" });
    }

    void whatIsNoMessageIsDropped_data()
    {
        QTest::addColumn<QByteArray>("line");
        QTest::newRow("blank") << QByteArray();
        QTest::newRow("not JSON") << QByteArray("{\"type\":\"ready\"");
        QTest::newRow("array") << QByteArray("[\"ready\"]");
        QTest::newRow("no type") << QByteArray("{\"title\":\"Song\"}");
        QTest::newRow("unknown type") << QByteArray("{\"type\":\"lyrics\"}");
        QTest::newRow("type is a number") << QByteArray("{\"type\":1}");
        QTest::newRow("not UTF-8") << QByteArray("{\"type\":\"state\",\"title\":\"\xff\xfe\"}");
        QTest::newRow("deep") << QByteArray(100'000, '[');
        QTest::newRow("artwork without data") << QByteArray("{\"type\":\"artwork\",\"id\":\"a\"}");
        QTest::newRow("artwork without id") << QByteArray("{\"type\":\"artwork\",\"data\":\"QUJD\"}");
        QTest::newRow("artwork in no base 64")
            << QByteArray("{\"type\":\"artwork\",\"id\":\"a\",\"data\":\"QU*D\"}");
    }
    void whatIsNoMessageIsDropped()
    {
        QFETCH(const QByteArray, line);
        QVERIFY(!readAdapterMessage(line));
    }

    void titleAloneMakesAState()
    {
        const auto state = stateWith(R"("title":"Song")");
        QCOMPARE(state.track, (NowPlayingTrack { u"Song\u001f\u001f\u001f"_s + u'0', u"Song"_s, {}, {}, 0 }));
        QCOMPARE(state.pid, 0);
        QVERIFY(!state.isPlaying && !state.timestamp && !state.artworkID && !state.volume);
        QCOMPARE(state.elapsed, 0.0);
        QCOMPARE(state.rate, 0.0);
    }

    void everyMemberOfAStateIsRead()
    {
        const auto state = stateWith(R"("pid":42,"title":"T","artist":"A","album":"B","duration":187.9,
            "playing":true,"elapsed":12.5,"rate":2,"timestamp":1700000000.25,"artworkID":"art","volume":30)");
        QCOMPARE(state.track,
            (NowPlayingTrack { u"T\u001fA\u001fB\u001f"_s + u"187"_s, u"T"_s, u"A"_s, u"B"_s, 187.9 }));
        QCOMPARE(state.pid, 42);
        QVERIFY(state.isPlaying);
        QCOMPARE(state.elapsed, 12.5);
        QCOMPARE(state.rate, 2.0);
        QCOMPARE(state.timestamp, QDateTime::fromMSecsSinceEpoch(1'700'000'000'250, QTimeZone::utc()));
        QCOMPARE(state.artworkID, u"art"_s);
        QCOMPARE(state.volume, 30.0);
    }

    void oddNumbersBecomeSane_data()
    {
        QTest::addColumn<QByteArray>("members");
        QTest::addColumn<qint32>("pid");
        QTest::addColumn<double>("duration");
        QTest::addColumn<double>("elapsed");
        QTest::addColumn<double>("rate");
        QTest::addColumn<double>("volume");
        const auto none = -1.0;
        QTest::newRow("playing at no rate")
            << QByteArray(R"("playing":true)") << 0 << 0.0 << 0.0 << 1.0 << none;
        QTest::newRow("texts") << QByteArray(
            R"("pid":"7","duration":"9","elapsed":"1","rate":"1","volume":"5","playing":"true")")
                               << 0 << 0.0 << 0.0 << 0.0 << none;
        QTest::newRow("nulls") << QByteArray(R"("pid":null,"duration":null,"elapsed":null,"volume":null)")
                               << 0 << 0.0 << 0.0 << 0.0 << none;
        QTest::newRow("negative length") << QByteArray(R"("duration":-5)") << 0 << 0.0 << 0.0 << 0.0 << none;
        QTest::newRow("negative position")
            << QByteArray(R"("elapsed":-5)") << 0 << 0.0 << -5.0 << 0.0 << none;
        QTest::newRow("pid too large") << QByteArray(R"("pid":4294967297)") << 0 << 0.0 << 0.0 << 0.0 << none;
        QTest::newRow("pid with a fraction") << QByteArray(R"("pid":4.5)") << 0 << 0.0 << 0.0 << 0.0 << none;
        QTest::newRow("largest pid") << QByteArray(R"("pid":2147483647)") << 2147483647 << 0.0 << 0.0 << 0.0
                                     << none;
        QTest::newRow("volume beyond") << QByteArray(R"("volume":130)") << 0 << 0.0 << 0.0 << 0.0 << 100.0;
        QTest::newRow("volume below") << QByteArray(R"("volume":-1)") << 0 << 0.0 << 0.0 << 0.0 << 0.0;
    }
    void oddNumbersBecomeSane()
    {
        QFETCH(const QByteArray, members);
        const auto state = stateWith(members);
        QTEST(state.pid, "pid");
        QTEST(state.track.duration, "duration");
        QTEST(state.elapsed, "elapsed");
        QTEST(state.rate, "rate");
        QTEST(state.volume.value_or(-1), "volume");
    }

    void numbersThatAreNoneNeverGetThrough()
    {
        for (const QByteArray number : { "1e999", "-1e999", "NaN", "Infinity", "1e308", "-1e308" }) {
            const auto line = "{\"type\":\"state\",\"title\":\"T\",\"duration\":" + number
                + ",\"elapsed\":" + number + ",\"rate\":" + number + ",\"timestamp\":" + number + '}';
            const auto state = readAs<adaptermessage::State>(line);
            if (!state)
                continue;
            QVERIFY(qIsFinite(state->track.duration) && state->track.duration >= 0);
            QVERIFY(qIsFinite(state->elapsed) && qIsFinite(state->rate));
            QVERIFY(!state->timestamp);
            QVERIFY(state->track.id.startsWith(u"T\u001f"));
        }
    }

    void hostileTextsBecomeOneShortLine()
    {
        const auto lines = stateWith(R"("title":"a\nb\u001fc\u2028d\u0000e","artist":["A"],"album":{})");
        QCOMPARE(lines.track.title, u"a b c d e"_s);
        QCOMPARE(lines.track.artist, QString());
        QCOMPARE(lines.track.id.count(QChar(0x1f)), 3);

        const auto odd = stateWith("\"title\":\"x" + QString(u"😀"_s).repeated(9000).toUtf8() + '"');
        QVERIFY(odd.track.title.size() <= 500);
        QVERIFY(!odd.track.title.back().isHighSurrogate());
    }

    void artworkIsDecodedAndBounded()
    {
        const auto artwork = [](const QByteArray& data) {
            return readAs<adaptermessage::Artwork>(
                "{\"type\":\"artwork\",\"id\":\"a\",\"data\":\"" + data + "\"}");
        };
        QCOMPARE(artwork(picture({ 1200, 800 }))->image.size(), QSize(600, 400));
        QCOMPARE(artwork(picture({ 40, 40 }))->image.size(), QSize(40, 40));
        QVERIFY(artwork("QUJD"));
        QVERIFY(artwork("QUJD")->image.isNull());
        QVERIFY(artwork("")->image.isNull());
    }

    void numbersBecomeTheirShortestText_data()
    {
        QTest::addColumn<double>("number");
        QTest::addColumn<QString>("text");
        QTest::newRow("whole") << 42.0 << u"42.0"_s;
        QTest::newRow("nothing") << 0.0 << u"0.0"_s;
        QTest::newRow("fraction") << 12.5 << u"12.5"_s;
        QTest::newRow("tenth") << 0.1 << u"0.1"_s;
        QTest::newRow("all digits") << 0.1 + 0.2 << u"0.30000000000000004"_s;
        QTest::newRow("large") << 1e7 << u"10000000.0"_s;
        QTest::newRow("small") << 5e-5 << u"0.00005"_s;
    }
    void numbersBecomeTheirShortestText()
    {
        QFETCH(const double, number);
        QTEST(shortestDecimal(number), "text");
        QCOMPARE(shortestDecimal(number).toDouble(), number);
    }
};

QTEST_GUILESS_MAIN(AdapterMessageTest)
#include "AdapterMessageTest.moc"
