#pragma once

#include "platform/ScreenGeometry.h"

#include <QPointF>
#include <QRectF>

namespace nimbarrow {

// Qt's y axis points down and the program's points up. Mirroring at the line y = 0 needs to know no screen's
// height, so no answer goes stale when the screens change.

inline ScreenPoint flipped(QPointF point)
{
    return { point.x(), -point.y() };
}

inline ScreenRect flipped(const QRectF& rect)
{
    return { rect.x(), -(rect.y() + rect.height()), rect.width(), rect.height() };
}

inline QRectF flipped(const ScreenRect& rect)
{
    return { rect.x, -rect.maxY(), rect.width, rect.height };
}

} // namespace nimbarrow
