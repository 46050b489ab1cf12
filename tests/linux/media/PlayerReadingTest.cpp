#include "linux/media/PlayerReading.h"

#include "linux/media/AdapterMessages.h"

#include <QDBusObjectPath>
#include <QDBusVariant>
#include <QJsonDocument>
#include <QJsonObject>
#include <QTest>

#include <limits>

using namespace nimbarrow;
using namespace Qt::StringLiterals;

namespace {

QVariantMap playing(const QVariantMap& metadata, const QVariantMap& more = {})
{
    QVariantMap properties { { u"PlaybackStatus"_s, u"Playing"_s }, { u"Metadata"_s, metadata } };
    properties.insert(more);
    return properties;
}

QJsonObject told(const QVariantMap& properties, const QVariant& position = {})
{
    MediaState state;
    state.reading = readPlayer(properties);
    state.elapsed = readPosition(position).value_or(0);
    const auto line = stateLine(state);
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
        QTest::addColumn<QVariantMap>("properties");
        QTest::addColumn<QString>("key");
        QTest::addColumn<QJsonValue>("value");
        const auto row = [](const char* name, const QVariantMap& properties, const QString& key,
                             const QJsonValue& value) { QTest::newRow(name) << properties << key << value; };

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
        row("lines, separators and turns",
            playing({ { title,
                u" a\nb\x1f\u2028"
                "c\u202e "_s } }),
            u"title"_s, u"a b c"_s);
        row("long title", playing({ { title, QString(100'000, u'x') } }), u"title"_s, QString(500, u'x'));
        row("title cut inside a character", playing({ { title, QString(499, u'x') + u"\U0001F3B5"_s } }),
            u"title"_s, QString(499, u'x'));
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
    }

    void oddPropertiesGiveASaneLine()
    {
        QFETCH(QVariantMap, properties);
        QFETCH(QString, key);
        QFETCH(QJsonValue, value);
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

    void onlyRealTrackPathsTakeAPosition_data()
    {
        QTest::addColumn<QVariant>("id");
        QTest::addColumn<bool>("takes");
        const auto path = [](const QString& text) { return QVariant::fromValue(QDBusObjectPath(text)); };
        QTest::newRow("path") << path(u"/org/mpris/MediaPlayer2/Track/1"_s) << true;
        QTest::newRow("zero") << path(u"/0"_s) << false;
        QTest::newRow("root") << path(u"/"_s) << false;
        QTest::newRow("no track") << path(u"/org/mpris/MediaPlayer2/TrackList/NoTrack"_s) << false;
        QTest::newRow("text") << QVariant(u"/a/track"_s) << false;
        QTest::newRow("none") << QVariant() << false;
    }

    void onlyRealTrackPathsTakeAPosition()
    {
        QFETCH(QVariant, id);
        QFETCH(bool, takes);
        QCOMPARE(!readPlayer(playing({ { u"mpris:trackid"_s, id } })).trackPath.isEmpty(), takes);
    }

    void theBrowserIntegrationNamesTheBrowsersProcess()
    {
        QCOMPARE(readPlayer(playing({ { u"kde:pid"_s, 4711U } })).pid, 4711);
        QCOMPARE(readPlayer(playing({ { u"kde:pid"_s, -1 } })).pid, 0);
        QCOMPARE(readPlayer(playing({ { u"kde:pid"_s, 1e18 } })).pid, 0);
    }

    void whatFollowsFromTheLastLineIsNotToldAgain()
    {
        MediaState first;
        first.reading = readPlayer(playing({ { title, u"T"_s }, { length, 60e6 } }, { { u"Rate"_s, 2.0 } }));
        first.elapsed = 10;
        first.timestamp = 1000;
        auto later = first;
        later.timestamp = 1005;
        later.elapsed = 20;
        QVERIFY(first.tellsTheSameAs(later));
        later.elapsed = 21.5;
        QVERIFY(!first.tellsTheSameAs(later));
        later.elapsed = 20;
        later.artworkID = u"x"_s;
        QVERIFY(!first.tellsTheSameAs(later));
        QCOMPARE(first.elapsedAt(2000), 60);
    }
};

QTEST_GUILESS_MAIN(PlayerReadingTest)
#include "PlayerReadingTest.moc"
