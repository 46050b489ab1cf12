#include "linux/media/PlayerReading.h"

#include "mediaprotocol/MediaMessage.h"
#include "support/Test.h"

#include <QDBusObjectPath>
#include <QDBusVariant>
#include <QJsonDocument>
#include <QJsonObject>
#include <QTimeZone>

#include <limits>

namespace {

QVariantMap playing(const QVariantMap& metadata, const QVariantMap& more = {})
{
    QVariantMap properties { { u"PlaybackStatus"_s, u"Playing"_s }, { u"Metadata"_s, metadata } };
    properties.insert(more);
    return properties;
}

QJsonObject told(const QVariantMap& properties, const QVariant& position = {})
{
    auto state = readPlayer(properties).state;
    state.elapsed = readPosition(position).value_or(0);
    const auto line = encode(state);
    return line.count('\n') == 1 ? QJsonDocument::fromJson(line).object() : QJsonObject();
}

const auto infinity = std::numeric_limits<double>::infinity();
const auto title = u"xesam:title"_s;
const auto artist = u"xesam:artist"_s;
const auto length = u"mpris:length"_s;

} // namespace

class PlayerReadingTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void oddPropertiesGiveASaneLine_data()
    {
        const Rows<QVariantMap, QString, QJsonValue> row;
        row("no properties", {}, u"playing"_s, false);
        row("no length", playing({}), u"duration"_s, 0);
        row("signed length", playing({ { length, qint64(1'500'000) } }), u"duration"_s, 1.5);
        row("unsigned length", playing({ { length, quint64(1'500'000) } }), u"duration"_s, 1.5);
        row("double length", playing({ { length, 1.5e6 } }), u"duration"_s, 1.5);
        row("length as text", playing({ { length, u"1500000"_s } }), u"duration"_s, 0);
        row("negative length", playing({ { length, qint64(-1) } }), u"duration"_s, 0);
        row("no number", playing({ { length, std::nan("") } }), u"duration"_s, 0);
        row("endless length", playing({ { length, infinity } }), u"duration"_s, 0);
        row("longest length", playing({ { length, std::numeric_limits<qint64>::max() } }), u"duration"_s,
            1e9);

        row("artists", playing({ { artist, QStringList { u"A"_s, u""_s, u"B"_s } } }), u"artist"_s,
            u"A, B"_s);
        row("empty artist", playing({ { artist, QStringList { QString() } } }), u"artist"_s, QString());
        row("artist as text", playing({ { artist, u"A"_s } }), u"artist"_s, u"A"_s);
        row("artist as number", playing({ { artist, 5 } }), u"artist"_s, QString());
        row("album artist", playing({ { u"xesam:albumArtist"_s, QStringList { u"C"_s } } }), u"artist"_s,
            u"C"_s);
        row("wrapped title", playing({ { title, QVariant::fromValue(QDBusVariant(u"T"_s)) } }), u"title"_s,
            u"T"_s);
        row("title from the file", playing({ { u"xesam:url"_s, u"file:///m/My%20song.ogg"_s } }), u"title"_s,
            u"My song.ogg"_s);
        row("a title that is no line", playing({ { title, u"a\nb\u202e"_s } }), u"title"_s, u"a b"_s);
        row("no title to see", playing({ { title, u"\u200b"_s } }), u"title"_s, QString());
        row("long artists", playing({ { artist, QStringList(30, QString(99, u'x')) } }), u"artist"_s,
            QStringList(20, QString(99, u'x')).join(u", "_s).left(500));
        row("metadata as text", { { u"Metadata"_s, u"nothing"_s } }, u"title"_s, QString());

        row("rate", playing({}, { { u"Rate"_s, 1.5 } }), u"rate"_s, 1.5);
        row("no rate", playing({}), u"rate"_s, 1);
        row("zero rate", playing({}, { { u"Rate"_s, 0.0 } }), u"rate"_s, 1);
        row("rate while paused", { { u"PlaybackStatus"_s, u"Paused"_s }, { u"Rate"_s, 2.0 } }, u"rate"_s, 0);

        const QJsonValue absent(QJsonValue::Undefined);
        row("volume", playing({}, { { u"Volume"_s, 0.55 } }), u"volume"_s, 55);
        row("loud volume", playing({}, { { u"Volume"_s, 1.3 } }), u"volume"_s, 100);
        row("negative volume", playing({}, { { u"Volume"_s, -1.0 } }), u"volume"_s, 0);
        row("no volume", playing({}), u"volume"_s, absent);
        row("volume without a number", playing({}, { { u"Volume"_s, infinity } }), u"volume"_s, absent);
        row("volume out of reach", playing({}, { { u"Volume"_s, 0.5 }, { u"CanControl"_s, false } }),
            u"volume"_s, absent);
        row("seeking", playing({}), u"canSeek"_s, true);
        row("no seeking", playing({}, { { u"CanSeek"_s, false } }), u"canSeek"_s, false);
        row("the browser's process", playing({ { u"kde:pid"_s, 4711U } }), u"pid"_s, 4711);
        row("no process", playing({ { u"kde:pid"_s, -1 } }), u"pid"_s, 0);
        row("absurd process", playing({ { u"kde:pid"_s, 1e18 } }), u"pid"_s, 0);
    }
    void oddPropertiesGiveASaneLine()
    {
        const auto [properties, key, value] = Rows<QVariantMap, QString, QJsonValue>::current();
        const auto message = told(properties);
        QCOMPARE(message.value(u"type"_s), QJsonValue(u"state"_s));
        QCOMPARE(message.value(key), value);
    }

    void positionsNeverLieBeforeTheStart()
    {
        QCOMPARE(told({}, qint64(-5'000'000)).value(u"elapsed"_s), QJsonValue(0));
        QCOMPARE(told({}, qint64(2'500'000)).value(u"elapsed"_s), QJsonValue(2.5));
        QVERIFY(!readPosition(infinity));
        QVERIFY(!readPosition({}));
    }

    void onlyRealTrackPathsTakeAPosition()
    {
        const auto path = [](const QString& text) { return QVariant::fromValue(QDBusObjectPath(text)); };
        const struct {
            QVariant id;
            bool takes;
            bool names;
        } rows[] = { { path(u"/org/mpris/MediaPlayer2/Track/1"_s), true, true },
            { path(u"/0"_s), false, true }, { path(u"/"_s), false, false },
            { path(u"/org/mpris/MediaPlayer2/TrackList/NoTrack"_s), false, false },
            { u"/a/track"_s, false, true }, { {}, false, false } };
        for (const auto& row : rows) {
            const auto reading = readPlayer(playing({ { u"mpris:trackid"_s, row.id } }));
            QCOMPARE(!reading.trackPath.isEmpty(), row.takes);
            QCOMPARE(!reading.state.trackID.isEmpty(), row.names);
        }
    }

    void aStateTellsWhereTheTrackIsLater()
    {
        const auto time = QDateTime::fromSecsSinceEpoch(1'700'000'000, QTimeZone::utc());
        auto state = readPlayer(playing({ { length, 60e6 } }, { { u"Rate"_s, 2.0 } })).state;
        state.elapsed = 10;
        state.timestamp = time;
        QCOMPARE(state.elapsedAt(time.addSecs(5)), 20);
        QCOMPARE(state.elapsedAt(time.addSecs(100)), 60);
        QCOMPARE(state.elapsedAt(time.addSecs(-100)), 0);
        state.isPlaying = false;
        QCOMPARE(state.elapsedAt(time.addSecs(5)), 10);
    }
};

QTEST_GUILESS_MAIN(PlayerReadingTest)
#include "PlayerReadingTest.moc"
