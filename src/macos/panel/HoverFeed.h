#pragma once

#include <QPainterPath>
#include <QPointF>

#include <optional>

class QQuickWindow;

namespace nimbarrow {

/// Gives a window the hover that Qt keeps from it while the program is not the active one, which the panel's
/// program hardly ever is.
class HoverFeed final {
public:
    /// `window` outlives the feed.
    explicit HoverFeed(QQuickWindow& window);

    /// In window coordinates (points, y down). Outside it the pointer is not over the window.
    void setOutline(const QPainterPath& outline);

    /// The pointer is there, in window coordinates. While `isActive` Qt tells of it by itself.
    void pointerAt(QPointF place, bool isActive);
    /// The pointer is nowhere over the window.
    void pointerGone(bool isActive);

private:
    void enter(QPointF place);
    void move(QPointF place);
    void leave();

    QQuickWindow& m_window;
    std::optional<QPainterPath> m_outline;
    bool m_isInside = false;
};

} // namespace nimbarrow
