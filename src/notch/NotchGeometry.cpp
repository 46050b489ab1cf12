#include "notch/NotchGeometry.h"

#include <algorithm>
#include <cmath>

namespace nimbarrow {

namespace {

// Beside it the header's controls have room, and below it the content.
constexpr QSizeF largestUsualNotch(212, 38);

} // namespace

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

QSizeF NotchGeometry::surplus() const
{
    return { std::max(0.0, std::ceil(notchRect.width - largestUsualNotch.width())),
        std::max(0.0, std::ceil(notchRect.height - largestUsualNotch.height())) };
}

} // namespace nimbarrow
