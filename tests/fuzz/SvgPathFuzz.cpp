#include "Fuzz.h"
#include "platform/linux/SvgPathBounds.h"

#include <cmath>

using namespace nimbarrow;

/// The path of a cut-out, which may be any text.
int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    const QByteArray path(reinterpret_cast<const char*>(data), static_cast<qsizetype>(size));
    const auto box = svgPathBounds(path);
    if (!box)
        return 0;
    fuzz::require(std::isfinite(box->left()) && std::isfinite(box->right()) && std::isfinite(box->top())
            && std::isfinite(box->bottom()),
        "a box has sides");
    fuzz::require(box->width() >= 0 && box->height() >= 0, "a box is not inside out");

    // A line more never makes the box smaller, and drawing the same once more changes nothing.
    if (const auto grown = svgPathBounds(path + " L 7 -3")) {
        fuzz::require(grown->left() <= box->left() && grown->right() >= box->right(), "a line adds width");
        fuzz::require(grown->top() <= box->top() && grown->bottom() >= box->bottom(), "a line adds height");
        fuzz::require(
            grown->left() <= 7 && grown->right() >= 7 && grown->top() <= -3 && grown->bottom() >= -3,
            "a line's end is in the box");
    }
    if (path.startsWith('M'))
        fuzz::require(svgPathBounds(path + ' ' + path) == box, "twice the same is the same");
    return 0;
}
