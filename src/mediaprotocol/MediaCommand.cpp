#include "mediaprotocol/MediaCommand.h"

#include "mediaprotocol/DecimalText.h"

#include <algorithm>
#include <array>
#include <cmath>

namespace nimbarrow {

namespace {

using Verb = MediaCommand::Verb;

struct Word {
    Verb verb;
    QByteArrayView text;
    /// The largest value; 0 for a command without one.
    double most;
};

constexpr std::array words {
    Word { Verb::Toggle, "toggle", 0 },
    Word { Verb::Next, "next", 0 },
    Word { Verb::Previous, "previous", 0 },
    Word { Verb::Refresh, "refresh", 0 },
    // Beyond any recording, and far from the edge of what microseconds can count.
    Word { Verb::Seek, "seek", 1e9 },
    Word { Verb::Volume, "volume", 100 },
};

} // namespace

QByteArray encode(const MediaCommand& command)
{
    const auto* const word = std::ranges::find(words, command.verb, &Word::verb);
    auto line = word->text.toByteArray();
    if (word->most > 0) {
        if (std::isnan(command.value))
            return {};
        const auto value = std::clamp(command.value, 0.0, word->most);
        line += ' ';
        line += (command.verb == Verb::Volume ? wholeVolume(value) : shortestDecimal(value)).toLatin1();
    }
    return line + '\n';
}

std::optional<MediaCommand> decodeCommand(QByteArrayView line)
{
    line = line.trimmed();
    const auto space = line.indexOf(' ');
    const auto first = space < 0 ? line : line.first(space);
    const auto* const word = std::ranges::find(words, first, &Word::text);
    if (word == words.end() || (word->most > 0) != (space >= 0))
        return {};
    if (space < 0)
        return MediaCommand { word->verb };
    bool isNumber = false;
    const auto value = line.sliced(space + 1).toByteArray().toDouble(&isNumber);
    if (!isNumber || !std::isfinite(value))
        return {};
    return MediaCommand { word->verb, std::clamp(value, 0.0, word->most) };
}

} // namespace nimbarrow
