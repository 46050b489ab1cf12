#include "linux/display/WaylandPointer.h"

#include "qt/FlippedAxis.h"

#include <private/qdnd_p.h>

namespace nimbarrow {

namespace {

// So long after a new outline the compositor may tell of a pointer that has come under it.
constexpr auto outlinePatience = 100; // ms

} // namespace

void WaylandPointer::enter(QPointF place)
{
    // A hand that moves is followed by more.
    if (!m_sinceOutline.isValid() || m_sinceOutline.hasExpired(outlinePatience))
        move(place);
}

void WaylandPointer::move(QPointF place)
{
    m_location = flipped(place);
}

bool WaylandPointer::isAnyButtonDown() const
{
    const auto* const drags = QDragManager::self();
    return m_isAnyButtonDown || (drags && drags->object());
}

void WaylandPointer::leave()
{
    m_location = pointerOutside;
    // With a button down the pointer leaves for a drag alone.
    m_isAnyButtonDown = false;
}

} // namespace nimbarrow
