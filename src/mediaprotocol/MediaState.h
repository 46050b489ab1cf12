#pragma once

#include <QDateTime>
#include <QString>

#include <optional>

namespace nimbarrow {

/// What plays, as the companion knows it and the program learns it.
struct MediaState {
    /// The process that plays; 0 when unknown.
    qint32 pid = 0;
    QString title;
    QString artist;
    QString album;
    /// The player's own name for the track, of which only equality counts; empty when it has none.
    QString trackID;
    /// Seconds, finite and not negative; 0 when unknown.
    double duration = 0;
    bool isPlaying = false;
    /// Seconds into the track at `timestamp`, finite.
    double elapsed = 0;
    /// Normal speed is 1; 0 while nothing moves.
    double rate = 0;
    /// None means now.
    std::optional<QDateTime> timestamp;
    /// Whether the player lets others choose the place in the track.
    bool canSeek = true;
    /// Under which the artwork comes; none when the track has none.
    std::optional<QString> artworkID;
    /// 0 to 100; none when the player has no volume that others may set.
    std::optional<double> volume;

    /// Seconds into the track at another time, if nothing happened since.
    [[nodiscard]] double elapsedAt(const QDateTime& time) const;
    /// Whether the other tells of the same track, however long that is by now.
    [[nodiscard]] bool isSameTrack(const MediaState& other) const;

    friend bool operator==(const MediaState&, const MediaState&) = default;
};

} // namespace nimbarrow
