#include "Fuzz.h"
#include "linux/media/CommandLines.h"
#include "linux/media/MediaCommand.h"

using namespace nimbarrow;

/// Whatever comes through the input pipe of the media adapter.
int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    const QByteArrayView bytes(data, static_cast<qsizetype>(size));
    CommandLines lines;
    QList<QByteArray> taken;
    fuzz::inPieces(bytes, [&](QByteArrayView piece) { taken += lines.take(piece); });
    fuzz::require(taken == fuzz::wholeLines(bytes, CommandLines::longest), "pieces make the same lines");
    for (const auto& line : std::as_const(taken)) {
        const auto command = parseMediaCommand(line);
        if (!command)
            continue;
        using Verb = MediaCommand::Verb;
        fuzz::require(command->value >= 0 && command->value <= 1e9, "a number that a player may get");
        fuzz::require(command->verb != Verb::Volume || command->value <= 100, "a volume is a percentage");
        fuzz::require(command->verb == Verb::Volume || command->verb == Verb::Seek || command->value == 0,
            "other commands have no number");
    }
    return 0;
}
