#include "mediaprotocol/MediaState.h"

#include <algorithm>

namespace nimbarrow {

double MediaState::elapsedAt(const QDateTime& time) const
{
    if (!isPlaying || !timestamp)
        return elapsed;
    const auto seconds = static_cast<double>(timestamp->msecsTo(time)) / 1000;
    const auto advanced = std::max(0.0, elapsed + seconds * rate);
    return duration > 0 ? std::min(advanced, duration) : advanced;
}

bool MediaState::isSameTrack(const MediaState& other) const
{
    // Without a name for it, its length has to tell it from another one of the same title.
    const bool isOne = trackID.isEmpty() ? duration == other.duration : true;
    return isOne && pid == other.pid && title == other.title && artist == other.artist && album == other.album
        && trackID == other.trackID;
}

} // namespace nimbarrow
