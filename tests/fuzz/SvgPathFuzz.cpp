#include "Fuzz.h"
#include "linux/display/SvgPathBounds.h"

#include <algorithm>
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
        // Boxes keep their size and not their far side, which is then rounded.
        const auto room = 1e-9
            * std::max({ 1.0, std::abs(box->left()), std::abs(box->top()), grown->width(), grown->height() });
        const auto holds = [box = grown->adjusted(-room, -room, room, room)](QPointF point) {
            return point.x() >= box.left() && point.x() <= box.right() && point.y() >= box.top()
                && point.y() <= box.bottom();
        };
        fuzz::require(holds(box->topLeft()) && holds(box->bottomRight()), "a line adds to the box");
        fuzz::require(holds(QPointF(7, -3)), "a line's end is in the box");
    }
    if (path.startsWith('M'))
        fuzz::require(svgPathBounds(path + ' ' + path) == box, "twice the same is the same");
    return 0;
}
