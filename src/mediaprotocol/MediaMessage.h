#pragma once

#include "mediaprotocol/MediaState.h"

#include <QByteArray>
#include <QString>

#include <optional>
#include <variant>

namespace nimbarrow {

/// The companion accepts commands from now on.
struct MediaReady {
    friend bool operator==(const MediaReady&, const MediaReady&) = default;
};

/// Nothing plays.
struct MediaIdle {
    friend bool operator==(const MediaIdle&, const MediaIdle&) = default;
};

/// The picture of the tracks that name it, before the first of them.
struct MediaArtwork {
    QString id;
    /// As the player provides it: any picture format, or none at all.
    QByteArray file;

    friend bool operator==(const MediaArtwork&, const MediaArtwork&) = default;
};

/// What the companion says, one line for each.
using MediaMessage = std::variant<MediaReady, MediaIdle, MediaArtwork, MediaState>;

/// In bytes. The largest messages are pictures in base 64.
inline constexpr qsizetype longestMessage = qsizetype { 16 } * 1024 * 1024;

/// One line, with its line feed. Any thread.
[[nodiscard]] QByteArray encode(const MediaMessage& message);

/// None for a line, given without its line feed, that is no message. Values of the wrong type count as
/// missing. Any thread.
[[nodiscard]] std::optional<MediaMessage> decodeMessage(const QByteArray& line);

} // namespace nimbarrow
