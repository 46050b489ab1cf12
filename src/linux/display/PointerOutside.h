#pragma once

#include "platform/ScreenGeometry.h"

namespace nimbarrow {

/// Where a pointer is that nothing is known of: farther than any screen.
inline constexpr ScreenPoint pointerOutside { -1e6, -1e6 };

} // namespace nimbarrow
