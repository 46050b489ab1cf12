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

constexpr qsizetype longestText = 500;
// A picture may stand in the address itself.
constexpr qsizetype longestUrl = 12 * 1024 * 1024;
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

QString trackPath(const QVariant& given)
{
    const auto value = unwrapped(given);
    // A player that gives a text here compares with a path all the same, or with nothing at all.
    if (value.metaType() != QMetaType::fromType<QDBusObjectPath>())
        return {};
    auto path = value.value<QDBusObjectPath>().path();
    if (path == "/"_L1 || path == "/0"_L1 || path.endsWith("/NoTrack"_L1, Qt::CaseInsensitive))
        return {};
    return path;
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
    reading.title = titleOf(metadata);
    reading.artist = text(metadata.value(u"xesam:artist"_s));
    if (reading.artist.isEmpty())
        reading.artist = text(metadata.value(u"xesam:albumArtist"_s));
    reading.album = text(metadata.value(u"xesam:album"_s));
    reading.duration = seconds(metadata.value(u"mpris:length"_s)).value_or(0);
    if (const auto rate = number(properties.value(u"Rate"_s)); rate && *rate > 0)
        reading.rate = std::min(*rate, fastest);
    if (const auto volume = number(properties.value(u"Volume"_s));
        volume && flag(properties.value(u"CanControl"_s)))
        reading.volume = std::round(std::clamp(*volume, 0.0, 1.0) * 1000) / 10;
    if (const auto url = unwrapped(metadata.value(u"mpris:artUrl"_s)).toString(); url.size() <= longestUrl)
        reading.artworkUrl = url;
    reading.trackPath = trackPath(metadata.value(u"mpris:trackid"_s));
    // The browser integration is a process beside the browser and names the browser's here.
    if (const auto pid = number(metadata.value(u"kde:pid"_s));
        pid && *pid >= 1 && *pid <= std::numeric_limits<qint32>::max())
        reading.pid = static_cast<qint32>(*pid);
    reading.canSeek = flag(unwrapped(properties.value(u"CanSeek"_s)));
    return reading;
}

std::optional<double> readPosition(const QVariant& position)
{
    return seconds(position);
}

} // namespace nimbarrow
