#pragma once

#include <QByteArrayList>
#include <QByteArrayView>

#include <algorithm>
#include <cstddef>
#include <cstdint>

/// What each fuzzer defines: plays one input, which may be anything.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size); // NOLINT: libFuzzer's name

namespace nimbarrow::fuzz {

/// Stops the program where a promise is broken; libFuzzer then keeps the input that broke it.
inline void require(bool kept, const char* promise)
{
    if (!kept)
        qFatal("Broken promise: %s", promise);
}

/// Gives the bytes to `take` as a pipe would, piece by piece. The first byte says how long the pieces are, so
/// an input always comes in the same ones.
template <typename Take>
void inPieces(QByteArrayView bytes, const Take& take)
{
    const qsizetype piece = bytes.isEmpty() ? 1 : 1 + static_cast<unsigned char>(bytes.front());
    for (; !bytes.isEmpty(); bytes = bytes.sliced(std::min(piece, bytes.size())))
        take(bytes.first(std::min(piece, bytes.size())));
}

/// The finished lines that are no longer than `longest`.
inline QByteArrayList wholeLines(QByteArrayView bytes, qsizetype longest)
{
    auto lines = bytes.toByteArray().split('\n');
    lines.removeLast();
    lines.removeIf([longest](const QByteArray& line) { return line.size() > longest; });
    return lines;
}

} // namespace nimbarrow::fuzz
