#include "linux/media/AdapterMessages.h"

#include <QJsonDocument>
#include <QJsonObject>

#include <algorithm>
#include <cmath>

using namespace Qt::StringLiterals;

namespace nimbarrow {

namespace {

using Playback = PlayerReading::Playback;

// Some players count whole seconds only.
constexpr double looseness = 1.0; // s

QByteArray line(const QString& type, QJsonObject message = {})
{
    message.insert(u"type"_s, type);
    return QJsonDocument(message).toJson(QJsonDocument::Compact) + '\n';
}

} // namespace

double MediaState::elapsedAt(double time) const
{
    if (reading.playback != Playback::Playing)
        return elapsed;
    const auto advanced = std::max(0.0, elapsed + (time - timestamp) * reading.rate);
    return reading.duration > 0 ? std::min(advanced, reading.duration) : advanced;
}

bool MediaState::tellsTheSameAs(const MediaState& other) const
{
    // Which address the artwork has and how the player wants to be addressed is nobody else's business.
    const auto& a = reading;
    const auto& b = other.reading;
    return a.title == b.title && a.artist == b.artist && a.album == b.album && a.duration == b.duration
        && a.playback == b.playback && a.rate == b.rate && a.volume == b.volume && pid == other.pid
        && artworkID == other.artworkID && std::abs(elapsedAt(other.timestamp) - other.elapsed) < looseness;
}

QByteArray readyLine()
{
    return line(u"ready"_s);
}

QByteArray idleLine()
{
    return line(u"idle"_s);
}

QByteArray stateLine(const MediaState& state)
{
    const auto& reading = state.reading;
    const bool playing = reading.playback == Playback::Playing;
    QJsonObject message {
        { u"pid"_s, state.pid },
        { u"title"_s, reading.title },
        { u"artist"_s, reading.artist },
        { u"album"_s, reading.album },
        { u"duration"_s, reading.duration },
        { u"playing"_s, playing },
        { u"elapsed"_s, state.elapsed },
        { u"rate"_s, playing ? reading.rate : 0.0 },
        { u"timestamp"_s, state.timestamp },
    };
    if (!state.artworkID.isEmpty())
        message.insert(u"artworkID"_s, state.artworkID);
    if (reading.volume)
        message.insert(u"volume"_s, *reading.volume);
    return line(u"state"_s, message);
}

QByteArray artworkLine(const QString& id, const QByteArray& file)
{
    return line(u"artwork"_s, { { u"id"_s, id }, { u"data"_s, QString::fromLatin1(file.toBase64()) } });
}

} // namespace nimbarrow
