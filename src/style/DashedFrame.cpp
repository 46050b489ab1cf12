#include "style/DashedFrame.h"

#include <QPainter>
#include <QPen>

namespace nimbarrow {

namespace {

// In points.
constexpr qreal dash = 6;
constexpr qreal gap = 4;

} // namespace

DashedFrame::DashedFrame(QQuickItem* parent)
    : QQuickPaintedItem(parent)
{
    setAntialiasing(true);
}

void DashedFrame::paint(QPainter* painter)
{
    if (m_lineWidth <= 0)
        return;
    QPen pen(m_color, m_lineWidth, Qt::CustomDashLine, Qt::FlatCap);
    // A pen counts its dashes in line widths.
    pen.setDashPattern({ dash / m_lineWidth, gap / m_lineWidth });
    painter->setPen(pen);
    const auto inset = m_lineWidth / 2;
    painter->drawRoundedRect(
        QRectF(0, 0, width(), height()).adjusted(inset, inset, -inset, -inset), m_radius, m_radius);
}

} // namespace nimbarrow
