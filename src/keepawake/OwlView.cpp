#include "keepawake/OwlView.h"

#include "keepawake/OwlDrawing.h"

#include <cmath>

namespace nimbarrow {

OwlView::OwlView(QQuickItem* parent)
    : QQuickPaintedItem(parent)
{
    setAntialiasing(true);
    setSize(24);
}

OwlView::~OwlView()
{
    if (m_motion)
        m_motion->setActive(false);
}

void OwlView::setMotion(OwlMotion* motion)
{
    if (m_motion == motion)
        return;
    if (m_motion)
        m_motion->disconnect(this);
    m_motion = motion;
    if (m_motion)
        connect(m_motion, &OwlMotion::poseChanged, this, [this] { update(); });
    drive();
    Q_EMIT inputChanged();
}

void OwlView::setSize(qreal size)
{
    if (m_size == size)
        return;
    m_size = size;
    setImplicitSize(size, std::ceil(size * owlHeadroom));
    update();
    Q_EMIT sizeChanged();
}

void OwlView::componentComplete()
{
    QQuickPaintedItem::componentComplete();
    drive();
}

void OwlView::assign(bool& field, bool value)
{
    if (field == value)
        return;
    field = value;
    drive();
    Q_EMIT inputChanged();
}

// Not before everything is set, or an owl that is awake would jump each time the surface opens.
void OwlView::drive()
{
    if (!m_motion || !isComponentComplete())
        return;
    m_motion->setReduced(m_reduceMotion);
    m_motion->setAwake(m_awake);
    m_motion->setActive(m_active);
}

void OwlView::paint(QPainter* painter)
{
    if (m_motion)
        drawOwl(
            *painter, { 0, height() - m_size * owlHeadroom, m_size, m_size * owlHeadroom }, m_motion->pose());
}

} // namespace nimbarrow
