#include "macos/display/ScreenFacts.h"

#include <algorithm>

namespace nimbarrow {

namespace {

std::optional<ScreenRect> unlessEmpty(const ScreenRect& area)
{
    if (area.width > 0 && area.height > 0)
        return area;
    return {};
}

} // namespace

Screen ScreenFacts::screen() const
{
    return { name, frame, std::max(0.0, safeAreaTop), unlessEmpty(auxiliaryTopLeft),
        unlessEmpty(auxiliaryTopRight) };
}

} // namespace nimbarrow
