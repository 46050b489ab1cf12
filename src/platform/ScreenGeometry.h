#pragma once

namespace nimbarrow {

/// A place on the desktop, in points. The y axis points up, as on paper: larger is higher on the screen.
struct ScreenPoint {
    double x = 0;
    double y = 0;

    friend bool operator==(const ScreenPoint&, const ScreenPoint&) = default;
};

/// A rectangle on the desktop, in points, with its origin at the bottom left.
struct ScreenRect {
    double x = 0;
    double y = 0;
    double width = 0;
    double height = 0;

    [[nodiscard]] double midX() const { return x + width / 2; }
    [[nodiscard]] double maxX() const { return x + width; }
    [[nodiscard]] double maxY() const { return y + height; }

    /// Moves each edge outward by `margin` points.
    [[nodiscard]] ScreenRect grown(double margin) const
    {
        return { x - margin, y - margin, width + 2 * margin, height + 2 * margin };
    }

    /// Points on an edge are inside.
    [[nodiscard]] bool contains(ScreenPoint point) const
    {
        return point.x >= x && point.x <= maxX() && point.y >= y && point.y <= maxY();
    }

    friend bool operator==(const ScreenRect&, const ScreenRect&) = default;
};

} // namespace nimbarrow
