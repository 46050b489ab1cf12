#pragma once

#include "linux/display/X11Properties.h"

namespace nimbarrow {

/// Takes the input focus for a window that the window manager does not know, and gives it back.
class X11KeyFocus {
public:
    /// `isNested` where the server is one inside a compositor, whose own windows it does not know.
    X11KeyFocus(xcb_connection_t* connection, xcb_window_t window, bool isNested);

    /// False when the server refuses it, as for a window that is not mapped.
    bool take();

    /// Back to where it was, if it is still ours. False when that is gone, and another window has got it, or
    /// none. `time` is that of what the user did; what others do about it later wins.
    bool giveBack(xcb_timestamp_t time);

    [[nodiscard]] bool isOurs() const;

private:
    [[nodiscard]] xcb_window_t focused() const;
    [[nodiscard]] x11::Owned<xcb_get_window_attributes_reply_t> attributes(xcb_window_t window) const;
    [[nodiscard]] bool isViewable(xcb_window_t window) const;
    bool set(xcb_window_t window, xcb_timestamp_t time) const;

    xcb_connection_t* m_connection;
    xcb_window_t m_window;
    bool m_isNested;
    xcb_window_t m_before = XCB_NONE;
};

} // namespace nimbarrow
