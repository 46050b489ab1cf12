#include "nowplaying/NowPlayingLog.h"

namespace nimbarrow {

Q_LOGGING_CATEGORY(logNowPlaying, "ua.tessak.Nimbarrow.nowplaying")

} // namespace nimbarrow
