#pragma once

#include <QByteArray>
#include <QByteArrayView>

#include <optional>

namespace nimbarrow {

/// One order to the player that plays, by way of the companion.
struct MediaCommand {
    enum class Verb {
        Toggle,
        Next,
        Previous,
        Seek,
        Volume,
        /// The player is asked anew what it plays.
        Refresh,
    };

    Verb verb = Verb::Toggle;
    /// Seconds of `Seek`, 0 to 1e9; percent of `Volume`, 0 to 100; otherwise 0. What lies beyond counts as
    /// the nearer end.
    double value = 0;

    friend bool operator==(const MediaCommand&, const MediaCommand&) = default;
};

/// In bytes; no command is nearly as long.
inline constexpr qsizetype longestCommand = 1024;

/// One line, with its line feed; empty where the value is no number.
[[nodiscard]] QByteArray encode(const MediaCommand& command);

/// None when the line, given without its line feed, is no command.
[[nodiscard]] std::optional<MediaCommand> decodeCommand(QByteArrayView line);

} // namespace nimbarrow
