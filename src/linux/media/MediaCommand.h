#pragma once

#include <QByteArrayView>

#include <optional>

namespace nimbarrow {

/// One order from the program that started the adapter.
struct MediaCommand {
    enum class Verb { Toggle, Next, Previous, Seek, Volume };

    Verb verb = Verb::Toggle;
    /// Seconds of `Seek`, 0 or more; percent of `Volume`, 0 to 100; otherwise 0.
    double value = 0;

    bool operator==(const MediaCommand&) const = default;
};

/// None when the line, given without its line feed, is no command.
[[nodiscard]] std::optional<MediaCommand> parseMediaCommand(QByteArrayView line);

} // namespace nimbarrow
