#include "linux/media/MediaCommand.h"

#include <QByteArray>

#include <algorithm>
#include <cmath>

namespace nimbarrow {

namespace {

using Verb = MediaCommand::Verb;

// Beyond any recording, and far from the edge of what microseconds can count.
constexpr double latestSecond = 1e9;

std::optional<MediaCommand> withNumber(Verb verb, QByteArrayView text, double most)
{
    bool isNumber = false;
    const auto value = text.toByteArray().toDouble(&isNumber);
    if (!isNumber || !std::isfinite(value))
        return {};
    return MediaCommand { verb, std::clamp(value, 0.0, most) };
}

} // namespace

std::optional<MediaCommand> parseMediaCommand(QByteArrayView line)
{
    line = line.trimmed();
    if (line == "toggle")
        return MediaCommand { Verb::Toggle };
    if (line == "next")
        return MediaCommand { Verb::Next };
    if (line == "previous")
        return MediaCommand { Verb::Previous };
    if (line.startsWith("seek "))
        return withNumber(Verb::Seek, line.sliced(5), latestSecond);
    if (line.startsWith("volume "))
        return withNumber(Verb::Volume, line.sliced(7), 100);
    return {};
}

} // namespace nimbarrow
