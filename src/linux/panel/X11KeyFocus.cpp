#include "linux/panel/X11KeyFocus.h"

namespace nimbarrow {

X11KeyFocus::X11KeyFocus(xcb_connection_t* connection, xcb_window_t window, bool isNested)
    : m_connection(connection)
    , m_window(window)
    , m_isNested(isNested)
{
}

bool X11KeyFocus::take()
{
    const auto before = focused();
    if (before == m_window)
        return true;
    m_before = before;
    return set(m_window, x11::serverTime());
}

bool X11KeyFocus::giveBack(xcb_timestamp_t time)
{
    if (!isOurs())
        return false;
    // While a window that the server does not know has the keyboard, GNOME's shell parks the focus on a
    // window of its own, and takes no notice when it comes back there. On the root window it is given to whom
    // it belongs.
    if (const auto parked = attributes(m_before); m_isNested && parked && parked->override_redirect)
        return set(x11::rootWindow(m_connection), time);
    if ((m_before == XCB_INPUT_FOCUS_POINTER_ROOT || isViewable(m_before)) && set(m_before, time))
        return true;
    const auto active = x11::windowProperty(
        m_connection, x11::rootWindow(m_connection), x11::atom(m_connection, "_NET_ACTIVE_WINDOW"));
    if (!active || !isViewable(*active) || !set(*active, time))
        set(XCB_INPUT_FOCUS_POINTER_ROOT, time);
    return false;
}

bool X11KeyFocus::isOurs() const
{
    return focused() == m_window;
}

xcb_window_t X11KeyFocus::focused() const
{
    const auto cookie = xcb_get_input_focus(m_connection);
    const auto reply = x11::owned(xcb_get_input_focus_reply(m_connection, cookie, nullptr));
    return reply ? reply->focus : xcb_window_t(XCB_NONE);
}

x11::Owned<xcb_get_window_attributes_reply_t> X11KeyFocus::attributes(xcb_window_t window) const
{
    // "None" and "wherever the pointer is" are no windows.
    if (window <= XCB_INPUT_FOCUS_POINTER_ROOT)
        return {};
    xcb_generic_error_t* error = nullptr;
    const auto cookie = xcb_get_window_attributes(m_connection, window);
    auto reply = x11::owned(xcb_get_window_attributes_reply(m_connection, cookie, &error));
    const auto isGone = x11::owned(error);
    return reply;
}

bool X11KeyFocus::isViewable(xcb_window_t window) const
{
    const auto found = attributes(window);
    return found && found->map_state == XCB_MAP_STATE_VIEWABLE;
}

bool X11KeyFocus::set(xcb_window_t window, xcb_timestamp_t time) const
{
    // Without a window that is focused, keys go where the pointer is: nobody is left with a dead keyboard.
    const auto cookie = xcb_set_input_focus_checked(m_connection, XCB_INPUT_FOCUS_POINTER_ROOT, window, time);
    return x11::owned(xcb_request_check(m_connection, cookie)) == nullptr;
}

} // namespace nimbarrow
