#include "Fuzz.h"
#include "nowplaying/AdapterLines.h"
#include "nowplaying/AdapterMessage.h"

#include <algorithm>
#include <cmath>

using namespace nimbarrow;

namespace {

constexpr qsizetype longestText = 500;
constexpr auto unitSeparator = QChar(0x1f);

bool isOneLine(const QString& text)
{
    return text.size() <= longestText && (text.isEmpty() || !text.back().isHighSurrogate())
        && std::ranges::none_of(text, [](QChar letter) {
               return letter.category() == QChar::Other_Control || letter == QChar::LineSeparator
                   || letter == QChar::ParagraphSeparator;
           });
}

struct Check {
    void operator()(const adaptermessage::Ready&) const { }
    void operator()(const adaptermessage::Idle&) const { }

    void operator()(const adaptermessage::Artwork& artwork) const
    {
        fuzz::require(artwork.image.width() <= 600 && artwork.image.height() <= 600, "a picture is small");
    }

    void operator()(const adaptermessage::State& state) const
    {
        const auto& track = state.track;
        fuzz::require(isOneLine(track.title) && isOneLine(track.artist) && isOneLine(track.album),
            "a text is one short line of whole characters");
        fuzz::require(track.id.count(unitSeparator) == 3, "an identity has four parts");
        fuzz::require(std::isfinite(track.duration) && track.duration >= 0, "a track takes its time");
        fuzz::require(std::isfinite(state.elapsed) && std::isfinite(state.rate), "numbers are numbers");
        fuzz::require(
            !state.volume || (*state.volume >= 0 && *state.volume <= 100), "volume is a percentage");
        fuzz::require(!state.timestamp || state.timestamp->isValid(), "a date is a date");
    }
};

} // namespace

/// Whatever the media adapter, or what was started in its place, writes.
int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    const QByteArrayView bytes(data, static_cast<qsizetype>(size));
    AdapterLines lines;
    QByteArrayList taken;
    fuzz::inPieces(bytes, [&](QByteArrayView piece) { taken += lines.add(piece.toByteArray()); });
    fuzz::require(taken == fuzz::wholeLines(bytes, AdapterLines::longest), "pieces make the same lines");
    fuzz::require(
        lines.kept() == bytes.size() - bytes.lastIndexOf('\n') - 1, "only the unfinished line is kept");
    for (const auto& line : std::as_const(taken)) {
        if (const auto message = readAdapterMessage(line))
            std::visit(Check(), *message);
    }
    return 0;
}
