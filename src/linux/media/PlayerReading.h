#pragma once

#include <QString>
#include <QVariantMap>

#include <optional>

namespace nimbarrow {

/// What a player says of itself, made sane: every number is finite, every text one line.
struct PlayerReading {
    enum class Playback { Stopped, Paused, Playing };

    Playback playback = Playback::Stopped;
    QString title;
    QString artist;
    QString album;
    /// Seconds; 0 when unknown.
    double duration = 0;
    /// Normal speed is 1; never 0 or less.
    double rate = 1;
    /// 0 to 100; absent when the player has no volume that others may set.
    std::optional<double> volume;
    QString artworkUrl;
    /// The bus path by which the track can be given a position; empty when only relative seeking works.
    QString trackPath;
    /// The process that the player speaks for; 0 when it speaks for itself.
    qint32 pid = 0;
    bool canSeek = true;

    /// Whether there is anything to show: players that have just started play before they know what.
    [[nodiscard]] bool isNamed() const { return !title.isEmpty() || !artist.isEmpty(); }

    bool operator==(const PlayerReading&) const = default;
};

/// From the properties of the player interface as the bus delivers them.
[[nodiscard]] PlayerReading readPlayer(const QVariantMap& properties);

/// Seconds, 0 or more, from a position in microseconds; none when that is not a number.
[[nodiscard]] std::optional<double> readPosition(const QVariant& position);

} // namespace nimbarrow
