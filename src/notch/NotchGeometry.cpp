#include "notch/NotchGeometry.h"

#include <cmath>

namespace nimbarrow {

std::optional<NotchGeometry> NotchGeometry::find(const QList<Screen>& screens)
{
    for (const auto& screen : screens) {
        if (screen.topInset <= 0 || !screen.topLeftArea || !screen.topRightArea)
            continue;
        const auto width = screen.frame.width - screen.topLeftArea->width - screen.topRightArea->width;
        if (width <= 0)
            continue;
        const ScreenRect notch {
            std::floor(screen.frame.midX() - width / 2),
            screen.frame.maxY() - screen.topInset,
            std::ceil(width),
            screen.topInset,
        };
        return NotchGeometry { screen.frame, notch };
    }
    return std::nullopt;
}

ScreenRect NotchGeometry::hangingFrame(double width, double height) const
{
    // std::round rounds half away from zero.
    return { std::round(notchRect.midX() - width / 2), screenFrame.maxY() - height, width, height };
}

} // namespace nimbarrow
