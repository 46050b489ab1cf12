#pragma once

#include <QRect>

#include <cstdlib>

namespace nimbarrow {

/// The room for a panel whose window may not follow each frame, because a compositor would be late with it:
/// as large as the largest frame that it has had at this place; the smaller ones lie in its middle. `least`
/// is there from the beginning.
[[nodiscard]] inline QRect panelRoom(const QRect& before, const QRect& frame, QSize least = {})
{
    const bool isSamePlace
        = before.top() == frame.top() && std::abs(before.center().x() - frame.center().x()) <= 1;
    QRect room(QPoint(), frame.size().expandedTo(isSamePlace ? before.size() : least));
    room.moveTopLeft({ frame.center().x() - (room.width() - 1) / 2, frame.top() });
    return room;
}

} // namespace nimbarrow
