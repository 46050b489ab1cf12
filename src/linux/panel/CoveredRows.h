#pragma once

#include <QList>
#include <QPainterPath>
#include <QRect>

namespace nimbarrow {

/// The device pixels that a filled path covers, as rectangles sorted by rows. A pixel counts when the path
/// covers half of its width on one of two lines through it, so a last row that is covered in part is there,
/// and slanted edges are not thicker than they look. A QRegion of the path's polygon is another shape: it
/// rounds each corner of the polygon to whole pixels, so the flares are up to 4 pixels wider and the last row
/// is missing where less than half of it is covered.
[[nodiscard]] QList<QRect> coveredRows(const QPainterPath& path, qreal devicePixelRatio);

} // namespace nimbarrow
