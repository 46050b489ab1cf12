#include "linux/display/X11Pointer.h"

#include "linux/display/PointerOutside.h"
#include "linux/display/X11Properties.h"
#include "qt/FlippedAxis.h"

#include <QCursor>

namespace nimbarrow {

// Qt asks the server each time too, and knows each screen's scale.
ScreenPoint X11Pointer::location() const
{
    if (m_isNested) {
        const auto pointer = x11::pointer(x11::qtConnection());
        if (!pointer || pointer->child == XCB_NONE)
            return pointerOutside;
    }
    return flipped(QPointF(QCursor::pos()));
}

bool X11Pointer::isAnyButtonDown() const
{
    constexpr auto buttons = XCB_BUTTON_MASK_1 | XCB_BUTTON_MASK_2 | XCB_BUTTON_MASK_3;
    const auto pointer = x11::pointer(x11::qtConnection());
    // The other bits are the wheel's, which is never held.
    return pointer && (pointer->mask & buttons) != 0;
}

} // namespace nimbarrow
