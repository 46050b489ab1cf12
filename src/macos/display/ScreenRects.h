#pragma once

#include "platform/ScreenGeometry.h"

#include <AppKit/AppKit.h>

namespace nimbarrow {

// On this system the y axis points up as the program's does, from the bottom left of the first screen.

inline ScreenRect screenRectOf(NSRect rect)
{
    return { rect.origin.x, rect.origin.y, rect.size.width, rect.size.height };
}

inline NSRect nativeRectOf(const ScreenRect& rect)
{
    return NSMakeRect(rect.x, rect.y, rect.width, rect.height);
}

} // namespace nimbarrow
