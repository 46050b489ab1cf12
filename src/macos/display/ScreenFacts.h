#pragma once

#include "platform/Screens.h"

namespace nimbarrow {

/// What the system tells of one screen.
struct ScreenFacts {
    QString name;
    ScreenRect frame;
    /// Points that the camera housing takes from the top; 0 without one.
    double safeAreaTop = 0;
    /// Beside the housing; without one they are empty and lie anywhere.
    ScreenRect auxiliaryTopLeft;
    ScreenRect auxiliaryTopRight;

    [[nodiscard]] Screen screen() const;
};

} // namespace nimbarrow
