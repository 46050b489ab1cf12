#include "linux/display/X11Pointer.h"

#include "linux/display/X11Properties.h"
#include "qt/FlippedAxis.h"

#include <QCursor>

namespace nimbarrow {

// Qt asks the server each time too, and knows each screen's scale.
ScreenPoint X11Pointer::location() const
{
    return flipped(QPointF(QCursor::pos()));
}

bool X11Pointer::isAnyButtonDown() const
{
    constexpr auto buttons = XCB_BUTTON_MASK_1 | XCB_BUTTON_MASK_2 | XCB_BUTTON_MASK_3;
    auto* connection = x11::qtConnection();
    const auto root = x11::rootWindow(connection);
    if (root == XCB_NONE)
        return false;
    const auto cookie = xcb_query_pointer(connection, root);
    const auto reply = x11::owned(xcb_query_pointer_reply(connection, cookie, nullptr));
    // The other bits are the wheel's, which is never held.
    return reply && (reply->mask & buttons) != 0;
}

} // namespace nimbarrow
