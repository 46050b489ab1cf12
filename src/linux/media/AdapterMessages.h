#pragma once

#include "linux/media/PlayerReading.h"

#include <QByteArray>

namespace nimbarrow {

/// What plays, as the program that started the adapter is told.
struct MediaState {
    PlayerReading reading;
    qint32 pid = 0;
    /// Seconds into the track at `timestamp`.
    double elapsed = 0;
    /// Seconds since 1970, UTC.
    double timestamp = 0;
    /// Empty when there is no artwork.
    QString artworkID;

    /// Where the track is at another time, if nothing happened since.
    [[nodiscard]] double elapsedAt(double time) const;

    /// Whether the other says nothing that does not follow from this one.
    [[nodiscard]] bool tellsTheSameAs(const MediaState& other) const;
};

/// The lines of the output pipe, each with its line feed.
[[nodiscard]] QByteArray readyLine();
[[nodiscard]] QByteArray idleLine();
[[nodiscard]] QByteArray stateLine(const MediaState& state);
[[nodiscard]] QByteArray artworkLine(const QString& id, const QByteArray& file);

} // namespace nimbarrow
