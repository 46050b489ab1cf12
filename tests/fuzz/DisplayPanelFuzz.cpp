#include "Fuzz.h"
#include "linux/display/DisplayPanel.h"

using namespace nimbarrow;

namespace {

// Room for what dividing and multiplying rounds.
bool isInside(const QRectF& box, QSizeF size)
{
    return !box.isEmpty() && QRectF(QPointF(), size).adjusted(-0.01, -0.01, 0.01, 0.01).contains(box);
}

} // namespace

/// A display-panel description out of anybody's data folder.
int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    const auto panel = DisplayPanel::fromJson(
        QByteArray(reinterpret_cast<const char*>(data), static_cast<qsizetype>(size)));
    if (!panel)
        return 0;
    constexpr auto longestSide = 32'768;
    const auto native = panel->resolution;
    fuzz::require(!native.isEmpty() && native.width() <= longestSide && native.height() <= longestSide,
        "a panel has a size that panels have");
    for (const auto& cutout : panel->cutouts)
        fuzz::require(isInside(cutout, native), "a cut-out lies on its panel");
    for (const auto mode : { native, native / 2, native * 3 / 2, native.transposed(), QSize(1, 1) }) {
        for (const auto hiddenRows : { 0, 64 }) {
            if (const auto cutout = panel->topCutout(mode, hiddenRows))
                fuzz::require(isInside(*cutout, mode + QSize(1, 1)), "a cut-out lies on the screen");
        }
    }
    return 0;
}
