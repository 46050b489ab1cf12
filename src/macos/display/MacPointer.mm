#include "macos/display/MacPointer.h"

#include <AppKit/AppKit.h>

namespace nimbarrow {

ScreenPoint MacPointer::location() const
{
    const auto place = NSEvent.mouseLocation;
    return { place.x, place.y };
}

bool MacPointer::isAnyButtonDown() const
{
    return NSEvent.pressedMouseButtons != 0;
}

} // namespace nimbarrow
