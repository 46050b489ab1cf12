#include "mediaprotocol/MediaMessage.h"

#include <QJsonDocument>
#include <QJsonObject>
#include <QTimeZone>

#include <algorithm>
#include <cmath>
#include <limits>

using namespace Qt::StringLiterals;

namespace nimbarrow {
namespace {

/// In seconds since 1970, so that dates stay dates.
constexpr auto latestTimestamp = 1e11;

std::optional<QString> textOf(const QJsonValue& value)
{
    return value.isString() ? std::optional(value.toString()) : std::nullopt;
}

std::optional<double> numberOf(const QJsonValue& value)
{
    if (!value.isDouble() || !std::isfinite(value.toDouble()))
        return {};
    return value.toDouble();
}

qint32 pidOf(const QJsonValue& value)
{
    const auto number = value.toInteger();
    return number >= std::numeric_limits<qint32>::min() && number <= std::numeric_limits<qint32>::max()
        ? static_cast<qint32>(number)
        : 0;
}

std::optional<QDateTime> dateOf(const QJsonValue& value)
{
    const auto seconds = numberOf(value);
    if (!seconds || std::abs(*seconds) > latestTimestamp)
        return {};
    return QDateTime::fromMSecsSinceEpoch(std::llround(*seconds * 1000), QTimeZone::utc());
}

MediaState stateOf(const QJsonObject& message)
{
    MediaState state;
    state.pid = pidOf(message[u"pid"]);
    state.title = message[u"title"].toString();
    state.artist = message[u"artist"].toString();
    state.album = message[u"album"].toString();
    state.trackID = message[u"trackID"].toString();
    state.duration = std::max(0.0, numberOf(message[u"duration"]).value_or(0));
    state.isPlaying = message[u"playing"].toBool();
    state.elapsed = numberOf(message[u"elapsed"]).value_or(0);
    state.rate = numberOf(message[u"rate"]).value_or(state.isPlaying ? 1 : 0);
    state.timestamp = dateOf(message[u"timestamp"]);
    state.canSeek = message[u"canSeek"].toBool(true);
    state.artworkID = textOf(message[u"artworkID"]);
    if (const auto volume = numberOf(message[u"volume"]))
        state.volume = std::clamp(*volume, 0.0, 100.0);
    return state;
}

std::optional<MediaMessage> artworkOf(const QJsonObject& message)
{
    const auto id = textOf(message[u"id"]);
    const auto data = textOf(message[u"data"]);
    if (!id || !data)
        return {};
    auto decoded = QByteArray::fromBase64Encoding(
        data->toLatin1(), QByteArray::Base64Encoding | QByteArray::AbortOnBase64DecodingErrors);
    if (!decoded)
        return {};
    return MediaArtwork { *id, *std::move(decoded) };
}

struct Members {
    QJsonObject operator()(const MediaReady&) const { return { { u"type"_s, u"ready"_s } }; }
    QJsonObject operator()(const MediaIdle&) const { return { { u"type"_s, u"idle"_s } }; }

    QJsonObject operator()(const MediaArtwork& artwork) const
    {
        return { { u"type"_s, u"artwork"_s }, { u"id"_s, artwork.id },
            { u"data"_s, QString::fromLatin1(artwork.file.toBase64()) } };
    }

    QJsonObject operator()(const MediaState& state) const
    {
        QJsonObject members {
            { u"type"_s, u"state"_s },
            { u"pid"_s, state.pid },
            { u"title"_s, state.title },
            { u"artist"_s, state.artist },
            { u"album"_s, state.album },
            { u"trackID"_s, state.trackID },
            { u"duration"_s, state.duration },
            { u"playing"_s, state.isPlaying },
            { u"elapsed"_s, state.elapsed },
            { u"rate"_s, state.rate },
            { u"canSeek"_s, state.canSeek },
        };
        if (state.timestamp)
            members.insert(u"timestamp"_s, static_cast<double>(state.timestamp->toMSecsSinceEpoch()) / 1000);
        if (state.artworkID)
            members.insert(u"artworkID"_s, *state.artworkID);
        if (state.volume)
            members.insert(u"volume"_s, *state.volume);
        return members;
    }
};

} // namespace

QByteArray encode(const MediaMessage& message)
{
    return QJsonDocument(std::visit(Members(), message)).toJson(QJsonDocument::Compact) + '\n';
}

std::optional<MediaMessage> decodeMessage(const QByteArray& line)
{
    const auto message = QJsonDocument::fromJson(line).object();
    const auto type = message[u"type"].toString();
    if (type == "ready"_L1)
        return MediaReady {};
    if (type == "idle"_L1)
        return MediaIdle {};
    if (type == "artwork"_L1)
        return artworkOf(message);
    if (type == "state"_L1)
        return stateOf(message);
    return {};
}

} // namespace nimbarrow
