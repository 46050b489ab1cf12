#pragma once

#include "mediaprotocol/MediaState.h"

#include <QString>
#include <QVariantMap>

#include <optional>

namespace nimbarrow {

/// What a player says of itself, made sane: every number is finite, every text one plain line.
struct PlayerReading {
    enum class Playback { Stopped, Paused, Playing };

    Playback playback = Playback::Stopped;
    /// All but its place in time, which is asked for, and its artwork, which is fetched. The process is 0
    /// when the player speaks for itself.
    MediaState state;
    QString artworkUrl;
    /// The bus path by which the track can be given a position; empty when only relative seeking works.
    QString trackPath;

    /// Whether there is anything to show: players that have just started play before they know what.
    [[nodiscard]] bool isActive() const
    {
        return playback != Playback::Stopped && !(state.title.isEmpty() && state.artist.isEmpty());
    }
};

/// From the properties of the player interface as the bus delivers them.
[[nodiscard]] PlayerReading readPlayer(const QVariantMap& properties);

/// Seconds, 0 or more, from a position in microseconds; none when that is not a number.
[[nodiscard]] std::optional<double> readPosition(const QVariant& position);

} // namespace nimbarrow
