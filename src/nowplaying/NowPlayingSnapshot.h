#pragma once

#include "nowplaying/NowPlayingApp.h"
#include "nowplaying/NowPlayingTrack.h"

#include <QDateTime>

#include <optional>

namespace nimbarrow {

/// One reading of a source.
struct NowPlayingSnapshot {
    std::optional<NowPlayingApp> app;
    /// None when nothing is playing.
    std::optional<NowPlayingTrack> track;
    bool isPlaying = false;
    /// Seconds into the track at `date`.
    double elapsed = 0;
    /// 1 is normal speed.
    double rate = 0;
    QDateTime date;
    /// Whether the place in the track can be chosen.
    bool canSeek = true;
    /// Under which the source delivers, or has delivered, the artwork.
    std::optional<QString> artworkID;
    /// The player's own, 0 to 100; none from a source that does not tell it.
    std::optional<double> volume;

    [[nodiscard]] static NowPlayingSnapshot idle(const QDateTime& now)
    {
        NowPlayingSnapshot snapshot;
        snapshot.date = now;
        return snapshot;
    }
};

} // namespace nimbarrow
