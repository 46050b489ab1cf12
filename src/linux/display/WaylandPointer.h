#pragma once

#include "linux/display/PointerOutside.h"
#include "platform/Pointer.h"

#include <QPointF>
#include <QRegion>

#include <optional>

namespace nimbarrow {

/// The pointer as far as the panel's own surface hears of it: elsewhere a compositor tells nobody. There it
/// is outside of everything, and so is one that rests where the surface has come to it, until it moves.
class WaylandPointer final : public Pointer {
public:
    [[nodiscard]] ScreenPoint location() const override { return m_location; }
    /// So it is while something is dragged out of the panel, which takes the button's release with it.
    [[nodiscard]] bool isAnyButtonDown() const override;

    // What has happened to the surface, in Qt's coordinates of the desktop.

    /// The surface hears of the pointer there alone. What is there first has always been there.
    void setOutline(const QRegion& outline);
    void enter(QPointF place);
    void move(QPointF place);
    void leave();
    /// The surface has gone, and may come back to a pointer that has not moved.
    void loseSurface();
    void setAnyButtonDown(bool isDown) { m_isAnyButtonDown = isDown; }

private:
    ScreenPoint m_location = pointerOutside;
    bool m_isAnyButtonDown = false;
    bool m_isOver = false;
    QPointF m_place;
    /// Where the surface was taken away from it.
    std::optional<QPointF> m_placeBefore;
    QRegion m_outline;
    /// What the outline has covered all the time since the pointer was last heard of.
    QRegion m_watched;
};

} // namespace nimbarrow
