#pragma once

#include <QList>
#include <QPainterPath>
#include <QRect>

namespace nimbarrow {

/// The device pixels that a filled path covers, as rectangles sorted by rows. A pixel counts when the path
/// covers half of its width on one of two lines through it, so a last row that is covered in part is there,
/// and slanted edges are not thicker than they look.
[[nodiscard]] QList<QRect> coveredRows(const QPainterPath& path, qreal devicePixelRatio);

} // namespace nimbarrow
