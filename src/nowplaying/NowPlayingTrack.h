#pragma once

#include <QObject>
#include <QString>
#include <qqmlintegration.h>

namespace nimbarrow {

/// A piece of music, or whatever else is played.
class NowPlayingTrack {
    Q_GADGET
    QML_VALUE_TYPE(nowPlayingTrack)
    Q_PROPERTY(QString id MEMBER id)
    Q_PROPERTY(QString title MEMBER title)
    Q_PROPERTY(QString artist MEMBER artist)
    Q_PROPERTY(QString album MEMBER album)
    Q_PROPERTY(double duration MEMBER duration)

public:
    /// Another one means another track; each source forms it in its own way.
    QString id;
    QString title;
    QString artist;
    QString album;
    /// In seconds, finite and not negative; 0 when unknown.
    double duration = 0;

    friend bool operator==(const NowPlayingTrack&, const NowPlayingTrack&) = default;
};

} // namespace nimbarrow
