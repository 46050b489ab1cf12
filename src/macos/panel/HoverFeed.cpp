#include "macos/panel/HoverFeed.h"

#include <QCoreApplication>
#include <QEnterEvent>
#include <QMouseEvent>
#include <QQuickWindow>

namespace nimbarrow {

HoverFeed::HoverFeed(QQuickWindow& window)
    : m_window(window)
{
}

void HoverFeed::setOutline(const QPainterPath& outline)
{
    m_outline = outline;
}

void HoverFeed::pointerAt(QPointF place, bool isActive)
{
    if (m_outline && !m_outline->contains(place)) {
        pointerGone(isActive);
        return;
    }
    if (isActive) {
        // Qt has told of the place, and will tell when the pointer leaves it.
        m_isInside = true;
        return;
    }
    if (!m_isInside)
        enter(place);
    move(place);
}

void HoverFeed::pointerGone(bool isActive)
{
    if (!m_isInside)
        return;
    if (isActive)
        m_isInside = false;
    else
        leave();
}

void HoverFeed::enter(QPointF place)
{
    m_isInside = true;
    QEnterEvent event(place, place, m_window.mapToGlobal(place));
    QCoreApplication::sendEvent(&m_window, &event);
}

void HoverFeed::move(QPointF place)
{
    QMouseEvent event(QEvent::MouseMove, place, place, m_window.mapToGlobal(place), Qt::NoButton,
        Qt::NoButton, Qt::NoModifier);
    QCoreApplication::sendEvent(&m_window, &event);
}

void HoverFeed::leave()
{
    m_isInside = false;
    QEvent event(QEvent::Leave);
    QCoreApplication::sendEvent(&m_window, &event);
}

} // namespace nimbarrow
