#include "linux/display/WaylandPointer.h"

#include "qt/FlippedAxis.h"

#include <cmath>
#include <private/qdnd_p.h>
#include <utility>

namespace nimbarrow {

namespace {

/// KWin tells of motion in whole points, and of where a pointer comes to a surface precisely.
bool isSame(QPointF place, std::optional<QPointF> other)
{
    return other && std::abs(place.x() - other->x()) < 1 && std::abs(place.y() - other->y()) < 1;
}

} // namespace

void WaylandPointer::setOutline(const QRegion& outline)
{
    m_watched = m_outline.isEmpty() ? outline : m_watched & outline;
    m_outline = outline;
}

// A compositor tells the same of a pointer that has moved over the surface and of one that the surface has
// come to, and of the latter whenever it likes. But one that was elsewhere has moved to where the surface has
// been all the time; and of any other movement more is heard.
void WaylandPointer::enter(QPointF place)
{
    const QPoint pixel(static_cast<int>(std::floor(place.x())), static_cast<int>(std::floor(place.y())));
    if (m_isOver || (m_watched.contains(pixel) && !isSame(place, m_placeBefore)))
        move(place);
    m_isOver = true;
    m_place = place;
}

void WaylandPointer::move(QPointF place)
{
    m_isOver = true;
    m_place = place;
    m_location = flipped(place);
}

bool WaylandPointer::isAnyButtonDown() const
{
    const auto* const drags = QDragManager::self();
    return m_isAnyButtonDown || (drags && drags->object());
}

void WaylandPointer::leave()
{
    if (std::exchange(m_isOver, false)) {
        m_watched = m_outline;
        m_placeBefore.reset();
    }
    m_location = pointerOutside;
    // With a button down the pointer leaves for a drag alone.
    m_isAnyButtonDown = false;
}

void WaylandPointer::loseSurface()
{
    if (!m_isOver)
        return;
    leave();
    m_placeBefore = m_place;
}

} // namespace nimbarrow
