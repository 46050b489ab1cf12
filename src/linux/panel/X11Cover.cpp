#include "linux/panel/X11Cover.h"

#include "linux/display/X11Properties.h"

#include <QGuiApplication>
#include <QRect>
#include <QScreen>
#include <QWindow>

#include <algorithm>
#include <span>
#include <utility>
#include <xcb/shape.h>

namespace nimbarrow {
namespace {

// Some lockers leave out the outermost pixels, so that no compositing manager takes its picture away.
constexpr auto leftOut = 4;

/// In the server's pixels. Qt leaves a screen's place as it is and scales its size.
QRect nativeGeometry(const QScreen& screen)
{
    return { screen.geometry().topLeft(), screen.size() * screen.devicePixelRatio() };
}

} // namespace

X11Cover::X11Cover(xcb_connection_t* connection, const QWindow& window)
    : m_connection(connection)
    , m_window(window)
    , m_id(static_cast<xcb_window_t>(window.winId()))
    , m_root(x11::rootWindow(connection))
    , m_manager(x11::atom(connection, "_NET_SUPPORTING_WM_CHECK"))
{
    const uint32_t below = XCB_STACK_MODE_BELOW;
    xcb_configure_window(m_connection, m_id, XCB_CONFIG_WINDOW_STACK_MODE, &below);
    x11::addEventMask(m_connection, m_root, XCB_EVENT_MASK_SUBSTRUCTURE_NOTIFY);
    const auto* shape = xcb_get_extension_data(m_connection, &xcb_shape_id);
    if (shape != nullptr && shape->present != 0)
        m_shapeChanged = shape->first_event + XCB_SHAPE_NOTIFY;
    m_cover = find();
    qGuiApp->installNativeEventFilter(this);
}

X11Cover::~X11Cover()
{
    qGuiApp->removeNativeEventFilter(this);
}

bool X11Cover::isLockedNow()
{
    const auto cover = find();
    if (cover == m_cover)
        return isLocked();
    const auto wasLocked = isLocked();
    m_cover = cover;
    if (isLocked() != wasLocked)
        Q_EMIT changed();
    return isLocked();
}

bool X11Cover::nativeEventFilter(const QByteArray& type, void* message, qintptr* /*result*/)
{
    if (type == "xcb_generic_event_t" && isAboutCovers(*static_cast<const xcb_generic_event_t*>(message)))
        isLockedNow();
    return false;
}

bool X11Cover::isAboutCovers(const xcb_generic_event_t& event) const
{
    switch (event.response_type & 0x7f) {
    case XCB_MAP_NOTIFY: {
        const auto& map = reinterpret_cast<const xcb_map_notify_event_t&>(event);
        return map.override_redirect != 0 && map.window != m_id;
    }
    case XCB_CONFIGURE_NOTIFY: {
        const auto& configure = reinterpret_cast<const xcb_configure_notify_event_t&>(event);
        const QRect frame(configure.x, configure.y, configure.width, configure.height);
        return configure.window == m_cover
            || (configure.override_redirect != 0 && configure.window != m_id && covers(frame));
    }
    case XCB_UNMAP_NOTIFY: return reinterpret_cast<const xcb_unmap_notify_event_t&>(event).window == m_cover;
    case XCB_DESTROY_NOTIFY:
        return reinterpret_cast<const xcb_destroy_notify_event_t&>(event).window == m_cover;
    default: return (event.response_type & 0x7f) == m_shapeChanged;
    }
}

xcb_window_t X11Cover::find() const
{
    const auto cookie = xcb_query_tree(m_connection, m_root);
    const auto tree = x11::owned(xcb_query_tree_reply(m_connection, cookie, nullptr));
    if (!tree)
        return XCB_NONE;
    // From the lowest to the highest.
    const std::span windows(
        xcb_query_tree_children(tree.get()), static_cast<std::size_t>(tree->children_len));
    const auto ours = std::ranges::find(windows, m_id);
    const auto cover = std::find_if(
        ours, windows.end(), [this](xcb_window_t window) { return window != m_id && isCover(window); });
    return cover == windows.end() ? xcb_window_t(XCB_NONE) : *cover;
}

bool X11Cover::isCover(xcb_window_t window) const
{
    const auto attributesCookie = xcb_get_window_attributes(m_connection, window);
    const auto geometryCookie = xcb_get_geometry(m_connection, window);
    xcb_generic_error_t* error = nullptr;
    const auto attributes
        = x11::owned(xcb_get_window_attributes_reply(m_connection, attributesCookie, &error));
    const auto isGone = x11::owned(std::exchange(error, nullptr));
    const auto geometry = x11::owned(xcb_get_geometry_reply(m_connection, geometryCookie, &error));
    const auto isGoneNow = x11::owned(error);
    if (!attributes || !geometry || attributes->override_redirect == 0
        || attributes->map_state != XCB_MAP_STATE_VIEWABLE
        || attributes->_class != XCB_WINDOW_CLASS_INPUT_OUTPUT)
        return false;
    const QRect frame(geometry->x, geometry->y, geometry->width, geometry->height);
    return covers(frame) && covers(clickable(window).translated(frame.topLeft())) && !isManagers(window);
}

bool X11Cover::isManagers(xcb_window_t window) const
{
    const auto manager = x11::windowProperty(m_connection, m_root, m_manager);
    // What one program makes at the server differs in these bits alone.
    const auto own = xcb_get_setup(m_connection)->resource_id_mask;
    return manager && (*manager & ~own) == (window & ~own);
}

QRect X11Cover::clickable(xcb_window_t window) const
{
    // First of all to hear of it when that changes.
    xcb_shape_select_input(m_connection, window, 1);
    const auto cookie = xcb_shape_get_rectangles(m_connection, window, XCB_SHAPE_SK_INPUT);
    xcb_generic_error_t* error = nullptr;
    const auto reply = x11::owned(xcb_shape_get_rectangles_reply(m_connection, cookie, &error));
    const auto isGone = x11::owned(error);
    QRect result;
    if (!reply)
        return result;
    const std::span rectangles(xcb_shape_get_rectangles_rectangles(reply.get()),
        static_cast<std::size_t>(xcb_shape_get_rectangles_rectangles_length(reply.get())));
    for (const auto& rectangle : rectangles)
        result |= QRect(rectangle.x, rectangle.y, rectangle.width, rectangle.height);
    return result;
}

bool X11Cover::covers(const QRect& frame) const
{
    const auto* screen = m_window.screen();
    return screen && frame.contains(nativeGeometry(*screen).adjusted(leftOut, leftOut, -leftOut, -leftOut));
}

} // namespace nimbarrow
