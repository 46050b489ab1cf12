#pragma once

#include "nowplaying/NowPlayingSnapshot.h"

#include <QImage>
#include <QObject>
#include <QString>

#include <functional>

namespace nimbarrow {

/// Where the model learns what is playing, and who carries out its commands. Calls back on the main thread.
class NowPlayingSource : public QObject {
    Q_OBJECT

public:
    using QObject::QObject;

    std::function<void(const NowPlayingSnapshot& snapshot)> onSnapshot;
    /// The image is null when the track of that identifier has none.
    std::function<void(const QString& id, const QImage& image)> onArtwork;
    /// The source cannot serve at all.
    std::function<void()> onUnavailable;

    virtual void start() = 0;
    virtual void stop() = 0;
    /// Reads the state anew and delivers what is new in it. Any number of calls during one reading make one
    /// more at most.
    virtual void refresh() = 0;
    virtual void playPause() = 0;
    virtual void next() = 0;
    virtual void previous() = 0;
    /// In seconds.
    virtual void seek(double to) = 0;
    /// 0 to 100; what lies beyond counts as the nearer end.
    virtual void setVolume(double volume) = 0;

protected:
    /// The longest side of the artwork that is kept, in pixels.
    static constexpr int artworkSide = 600;

    template <typename Callback, typename... Arguments>
    static void call(const Callback& callback, const Arguments&... arguments)
    {
        if (callback)
            callback(arguments...);
    }
};

} // namespace nimbarrow
