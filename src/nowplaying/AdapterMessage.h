#pragma once

#include "nowplaying/NowPlayingTrack.h"

#include <QByteArray>
#include <QDateTime>
#include <QImage>
#include <QString>

#include <optional>
#include <variant>

namespace nimbarrow {

/// One line of the adapter, read and made sane.
namespace adaptermessage {

struct Ready { };
struct Idle { };

struct Artwork {
    QString id;
    /// At most 600 pixels wide and high; null when the data is no picture.
    QImage image;
};

struct State {
    qint32 pid = 0;
    NowPlayingTrack track;
    bool isPlaying = false;
    double elapsed = 0;
    double rate = 0;
    /// When `elapsed` was measured; none means now.
    std::optional<QDateTime> timestamp;
    std::optional<QString> artworkID;
    /// 0 to 100.
    std::optional<double> volume;
};

} // namespace adaptermessage

using AdapterMessage = std::variant<adaptermessage::Ready, adaptermessage::Idle, adaptermessage::Artwork,
    adaptermessage::State>;

/// None for a line that is no message. Values of the wrong type count as missing. Any thread; decoding a
/// picture takes its time.
[[nodiscard]] std::optional<AdapterMessage> readAdapterMessage(const QByteArray& line);

} // namespace nimbarrow
