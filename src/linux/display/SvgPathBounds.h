#pragma once

#include <QByteArrayView>
#include <QRectF>

#include <optional>

namespace nimbarrow {

/// The smallest box around an SVG path: the curves' true extent, not that of their control points. None for
/// text that is no path, for coordinates that are no sane lengths, and for a path that encloses nothing.
[[nodiscard]] std::optional<QRectF> svgPathBounds(QByteArrayView path);

} // namespace nimbarrow
