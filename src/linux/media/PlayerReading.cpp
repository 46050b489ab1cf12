#include "linux/media/PlayerReading.h"

#include "text/DisplayLine.h"

#include <QDBusArgument>
#include <QDBusObjectPath>
#include <QDBusVariant>
#include <QStringList>
#include <QUrl>

#include <algorithm>
#include <cmath>
#include <limits>

using namespace Qt::StringLiterals;

namespace nimbarrow {

namespace {

// A picture may stand in the address itself.
constexpr qsizetype longestUrl = 12 * 1024 * 1024;
constexpr qsizetype longestTrackID = 4096;
constexpr double longestDuration = 1e9; // s
constexpr double fastest = 100;

/// Players wrap their values in more ways than they should.
QVariant unwrapped(const QVariant& value)
{
    if (value.metaType() == QMetaType::fromType<QDBusVariant>())
        return value.value<QDBusVariant>().variant();
    if (value.metaType() != QMetaType::fromType<QDBusArgument>())
        return value;
    const auto argument = value.value<QDBusArgument>();
    const auto signature = argument.currentSignature();
    if (signature == "a{sv}"_L1)
        return qdbus_cast<QVariantMap>(argument);
    if (signature == "av"_L1)
        return qdbus_cast<QVariantList>(argument);
    if (signature == "as"_L1)
        return qdbus_cast<QStringList>(argument);
    return {};
}

// Nobody shows more of a title.
constexpr qsizetype longestText = 500;

QString oneLine(const QString& text)
{
    return displayLine(text, longestText).simplified();
}

/// A text, or a list of texts with commas between them.
QString text(const QVariant& given)
{
    const auto value = unwrapped(given);
    switch (value.typeId()) {
    case QMetaType::QString: return oneLine(value.toString());
    case QMetaType::QStringList:
    case QMetaType::QVariantList: {
        QStringList parts;
        for (const auto& part : value.toList()) {
            if (const auto line = oneLine(unwrapped(part).toString()); !line.isEmpty())
                parts += line;
            if (parts.size() == 20)
                break;
        }
        return oneLine(parts.join(", "_L1));
    }
    default: return {};
    }
}

std::optional<double> number(const QVariant& given)
{
    const auto value = unwrapped(given);
    switch (value.typeId()) {
    case QMetaType::UChar:
    case QMetaType::Short:
    case QMetaType::UShort:
    case QMetaType::Int:
    case QMetaType::UInt:
    case QMetaType::LongLong:
    case QMetaType::ULongLong:
    case QMetaType::Double: break;
    default: return {};
    }
    const auto result = value.toDouble();
    if (!std::isfinite(result))
        return {};
    return result;
}

std::optional<double> seconds(const QVariant& microseconds)
{
    const auto value = number(microseconds);
    if (!value)
        return {};
    return std::clamp(*value / 1e6, 0.0, longestDuration);
}

bool flag(const QVariant& value)
{
    return value.typeId() != QMetaType::Bool || value.toBool();
}

PlayerReading::Playback playback(const QVariant& status)
{
    if (status.toString() == "Playing"_L1)
        return PlayerReading::Playback::Playing;
    if (status.toString() == "Paused"_L1)
        return PlayerReading::Playback::Paused;
    return PlayerReading::Playback::Stopped;
}

/// A path as the standard wants it, or a text, as some players give.
QString trackID(const QVariant& given)
{
    const auto value = unwrapped(given);
    const bool isPath = value.metaType() == QMetaType::fromType<QDBusObjectPath>();
    auto id = isPath ? value.value<QDBusObjectPath>().path() : value.toString();
    if (id.size() > longestTrackID || !id.isValidUtf16() || id.startsWith(QChar::ByteOrderMark)
        || id == "/"_L1 || id.endsWith("/NoTrack"_L1, Qt::CaseInsensitive))
        return {};
    return id;
}

QString titleOf(const QVariantMap& metadata)
{
    if (auto title = text(metadata.value(u"xesam:title"_s)); !title.isEmpty())
        return title;
    const auto address = unwrapped(metadata.value(u"xesam:url"_s)).toString();
    return oneLine(QUrl(address.left(8192)).fileName());
}

} // namespace

PlayerReading readPlayer(const QVariantMap& properties)
{
    const auto metadata = unwrapped(properties.value(u"Metadata"_s)).toMap();
    PlayerReading reading;
    reading.playback = playback(unwrapped(properties.value(u"PlaybackStatus"_s)));
    if (const auto url = unwrapped(metadata.value(u"mpris:artUrl"_s)).toString(); url.size() <= longestUrl)
        reading.artworkUrl = url;

    auto& state = reading.state;
    state.title = titleOf(metadata);
    state.artist = text(metadata.value(u"xesam:artist"_s));
    if (state.artist.isEmpty())
        state.artist = text(metadata.value(u"xesam:albumArtist"_s));
    state.album = text(metadata.value(u"xesam:album"_s));
    const auto track = unwrapped(metadata.value(u"mpris:trackid"_s));
    state.trackID = trackID(track);
    // A player that gives a text here compares with a path all the same, or with nothing at all.
    // And some know one path alone, which no track has.
    if (track.metaType() == QMetaType::fromType<QDBusObjectPath>() && state.trackID != "/0"_L1)
        reading.trackPath = state.trackID;
    state.duration = seconds(metadata.value(u"mpris:length"_s)).value_or(0);
    state.isPlaying = reading.playback == PlayerReading::Playback::Playing;
    if (state.isPlaying) {
        const auto rate = number(properties.value(u"Rate"_s)).value_or(1);
        state.rate = rate > 0 ? std::min(rate, fastest) : 1;
    }
    if (const auto volume = number(properties.value(u"Volume"_s));
        volume && flag(unwrapped(properties.value(u"CanControl"_s))))
        state.volume = std::round(std::clamp(*volume, 0.0, 1.0) * 1000) / 10;
    state.canSeek = flag(unwrapped(properties.value(u"CanSeek"_s)));
    // The browser integration is a process beside the browser and names the browser's here.
    if (const auto pid = number(metadata.value(u"kde:pid"_s));
        pid && *pid >= 1 && *pid <= std::numeric_limits<qint32>::max())
        state.pid = static_cast<qint32>(*pid);
    return reading;
}

std::optional<double> readPosition(const QVariant& position)
{
    return seconds(position);
}

} // namespace nimbarrow
