#include "notch/NotchShape.h"

#include <QPainter>

#include <algorithm>

namespace nimbarrow {

NotchShape::NotchShape(QQuickItem* parent)
    : QQuickPaintedItem(parent)
{
    setAntialiasing(true);
}

void NotchShape::setTopRadius(qreal radius)
{
    setRadius(m_topRadius, radius);
}

void NotchShape::setBottomRadius(qreal radius)
{
    setRadius(m_bottomRadius, radius);
}

void NotchShape::setRadius(qreal& field, qreal radius)
{
    if (field == radius)
        return;
    field = radius;
    update();
    polish();
}

QPainterPath NotchShape::path(const QRectF& rect, qreal topRadius, qreal bottomRadius)
{
    const auto width = rect.width();
    const auto height = rect.height();
    const auto top = std::max(std::min({ topRadius, width * 0.25, height * 0.5 }), 0.0);
    const auto bottom = std::max(std::min({ bottomRadius, (width - 2 * top) * 0.5, height - top }), 0.0);
    const auto left = rect.left() + top;
    const auto right = rect.right() - top;

    QPainterPath path(rect.topLeft());
    path.quadTo(left, rect.top(), left, rect.top() + top);
    path.lineTo(left, rect.bottom() - bottom);
    path.quadTo(left, rect.bottom(), left + bottom, rect.bottom());
    path.lineTo(right - bottom, rect.bottom());
    path.quadTo(right, rect.bottom(), right, rect.bottom() - bottom);
    path.lineTo(right, rect.top() + top);
    path.quadTo(right, rect.top(), rect.right(), rect.top());
    path.closeSubpath();
    return path;
}

QPainterPath NotchShape::outline() const
{
    return path(mapRectToScene(boundingRect()), m_topRadius, m_bottomRadius);
}

void NotchShape::paint(QPainter* painter)
{
    painter->fillPath(path(boundingRect(), m_topRadius, m_bottomRadius), Qt::black);
}

void NotchShape::geometryChange(const QRectF& newGeometry, const QRectF& oldGeometry)
{
    QQuickPaintedItem::geometryChange(newGeometry, oldGeometry);
    polish();
}

// The spring moves five values for every frame, and whoever shapes a window by the outline talks to its
// system each time.
void NotchShape::updatePolish()
{
    Q_EMIT outlineChanged();
}

} // namespace nimbarrow
