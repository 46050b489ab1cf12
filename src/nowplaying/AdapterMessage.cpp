#include "nowplaying/AdapterMessage.h"

#include "nowplaying/Artwork.h"

#include <QJsonDocument>
#include <QJsonObject>
#include <QTimeZone>

#include <algorithm>
#include <cmath>
#include <limits>

using namespace Qt::StringLiterals;

namespace nimbarrow {
namespace {

/// Nobody reads more than this, and laying out a longer line would hold up the views.
constexpr qsizetype longestText = 500;
/// In seconds since 1970, so that dates stay dates.
constexpr auto latestTimestamp = 1e11;
constexpr QChar unitSeparator(0x1f);

QString textOf(const QJsonValue& value)
{
    auto text = value.toString().left(longestText);
    if (!text.isEmpty() && text.back().isHighSurrogate())
        text.chop(1);
    // One line of text, whatever a tag holds; nor may it hold what separates the parts of an identity.
    std::replace_if(
        text.begin(), text.end(),
        [](QChar letter) {
            return letter.category() == QChar::Other_Control || letter.category() == QChar::Separator_Line
                || letter.category() == QChar::Separator_Paragraph;
        },
        u' ');
    return text;
}

std::optional<QString> identifierOf(const QJsonValue& value)
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

QString identityOf(const NowPlayingTrack& track)
{
    // Without digits after the point, whatever the size of the number.
    const auto seconds = QString::number(std::trunc(track.duration), 'f', 0);
    return QStringList { track.title, track.artist, track.album, seconds }.join(unitSeparator);
}

adaptermessage::State stateOf(const QJsonObject& message)
{
    adaptermessage::State state;
    state.pid = pidOf(message[u"pid"]);
    state.track.title = textOf(message[u"title"]);
    state.track.artist = textOf(message[u"artist"]);
    state.track.album = textOf(message[u"album"]);
    state.track.duration = std::max(0.0, numberOf(message[u"duration"]).value_or(0));
    state.track.id = identityOf(state.track);
    state.isPlaying = message[u"playing"].toBool();
    state.elapsed = numberOf(message[u"elapsed"]).value_or(0);
    state.rate = numberOf(message[u"rate"]).value_or(state.isPlaying ? 1 : 0);
    state.timestamp = dateOf(message[u"timestamp"]);
    state.artworkID = identifierOf(message[u"artworkID"]);
    if (const auto volume = numberOf(message[u"volume"]))
        state.volume = std::clamp(*volume, 0.0, 100.0);
    return state;
}

std::optional<AdapterMessage> artworkOf(const QJsonObject& message)
{
    const auto id = identifierOf(message[u"id"]);
    const auto data = message[u"data"];
    if (!id || !data.isString())
        return {};
    const auto decoded = QByteArray::fromBase64Encoding(
        data.toString().toLatin1(), QByteArray::Base64Encoding | QByteArray::AbortOnBase64DecodingErrors);
    if (!decoded)
        return {};
    return adaptermessage::Artwork { *id, artworkFromData(*decoded) };
}

} // namespace

std::optional<AdapterMessage> readAdapterMessage(const QByteArray& line)
{
    const auto message = QJsonDocument::fromJson(line).object();
    const auto type = message[u"type"].toString();
    if (type == "ready"_L1)
        return adaptermessage::Ready {};
    if (type == "idle"_L1)
        return adaptermessage::Idle {};
    if (type == "artwork"_L1)
        return artworkOf(message);
    if (type == "state"_L1)
        return stateOf(message);
    return {};
}

} // namespace nimbarrow
