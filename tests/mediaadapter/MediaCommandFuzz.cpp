#include "mediaadapter/CommandLines.h"
#include "mediaadapter/MediaCommand.h"

#include <cmath>
#include <cstddef>
#include <cstdint>
#include <cstdlib>

/// Whatever comes through the input pipe, in pieces: no crash, and no value that a player must not get.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    using namespace nimbarrow;
    CommandLines lines;
    const QByteArrayView bytes(data, static_cast<qsizetype>(size));
    const qsizetype piece = size == 0 ? 1 : 1 + data[0];
    for (qsizetype at = 0; at < bytes.size(); at += piece) {
        for (const auto& line : lines.take(bytes.sliced(at, std::min(piece, bytes.size() - at)))) {
            const auto command = parseMediaCommand(line);
            const bool sane = line.size() <= CommandLines::longest
                && (!command || (std::isfinite(command->value) && command->value >= 0));
            if (!sane)
                std::abort();
        }
    }
    return 0;
}
