#pragma once

#include "linux/display/PointerOutside.h"
#include "platform/Pointer.h"

#include <QElapsedTimer>

class QPointF;

namespace nimbarrow {

/// The pointer as far as the panel's own surface hears of it: elsewhere a compositor tells nobody. There it
/// is outside of everything.
class WaylandPointer final : public Pointer {
public:
    [[nodiscard]] ScreenPoint location() const override { return m_location; }
    /// So it is while something is dragged out of the panel, which takes the button's release with it.
    [[nodiscard]] bool isAnyButtonDown() const override;

    // What has happened to the surface, in Qt's coordinates of the desktop.

    /// The surface has become larger or smaller, so the pointer may come over it without having moved.
    void noteNewOutline() { m_sinceOutline.start(); }
    void enter(QPointF place);
    void move(QPointF place);
    void leave();
    void setAnyButtonDown(bool isDown) { m_isAnyButtonDown = isDown; }

private:
    ScreenPoint m_location = pointerOutside;
    bool m_isAnyButtonDown = false;
    QElapsedTimer m_sinceOutline;
};

} // namespace nimbarrow
