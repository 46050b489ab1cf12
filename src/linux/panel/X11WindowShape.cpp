#include "linux/panel/X11WindowShape.h"

#include "linux/display/X11Properties.h"

#include <QGuiApplication>

#include <algorithm>
#include <xcb/shape.h>
#include <xcb/xfixes.h>

namespace nimbarrow {
namespace {

bool isSame(const xcb_rectangle_t& a, const xcb_rectangle_t& b)
{
    return a.x == b.x && a.y == b.y && a.width == b.width && a.height == b.height;
}

} // namespace

X11WindowShape::X11WindowShape(xcb_connection_t* connection, xcb_window_t window)
    : m_connection(connection)
    , m_window(window)
{
    follow();
    m_isComposited = isComposited();
    qGuiApp->installNativeEventFilter(this);
}

X11WindowShape::~X11WindowShape()
{
    qGuiApp->removeNativeEventFilter(this);
}

void X11WindowShape::setRows(const QList<QRect>& rows)
{
    QList<xcb_rectangle_t> rectangles;
    rectangles.reserve(rows.size());
    for (const auto& row : rows) {
        rectangles << xcb_rectangle_t { static_cast<int16_t>(row.x()), static_cast<int16_t>(row.y()),
            static_cast<uint16_t>(row.width()), static_cast<uint16_t>(row.height()) };
    }
    if (m_rows && std::ranges::equal(*m_rows, rectangles, isSame))
        return;
    m_rows = std::move(rectangles);
    apply(XCB_SHAPE_SK_INPUT, *m_rows);
    if (!m_isComposited)
        applyBounding();
    xcb_flush(m_connection);
}

bool X11WindowShape::nativeEventFilter(const QByteArray& type, void* message, qintptr* /*result*/)
{
    if (type != "xcb_generic_event_t" || !m_ownerChanged)
        return false;
    const auto* event = static_cast<const xcb_generic_event_t*>(message);
    if ((event->response_type & 0x7f) != *m_ownerChanged)
        return false;
    if (reinterpret_cast<const xcb_xfixes_selection_notify_event_t*>(event)->selection != m_compositor)
        return false;
    const auto now = isComposited();
    if (now != m_isComposited) {
        m_isComposited = now;
        applyBounding();
        xcb_flush(m_connection);
    }
    return false;
}

void X11WindowShape::follow()
{
    m_compositor = x11::atom(m_connection, "_NET_WM_CM_S" + QByteArray::number(x11::defaultScreenNumber()));
    const auto* extension = xcb_get_extension_data(m_connection, &xcb_xfixes_id);
    if (extension == nullptr || extension->present == 0)
        return;
    m_ownerChanged = static_cast<uint8_t>(extension->first_event + XCB_XFIXES_SELECTION_NOTIFY);
    xcb_xfixes_select_selection_input(m_connection, m_window, m_compositor,
        XCB_XFIXES_SELECTION_EVENT_MASK_SET_SELECTION_OWNER
            | XCB_XFIXES_SELECTION_EVENT_MASK_SELECTION_WINDOW_DESTROY
            | XCB_XFIXES_SELECTION_EVENT_MASK_SELECTION_CLIENT_CLOSE);
}

bool X11WindowShape::isComposited() const
{
    const auto cookie = xcb_get_selection_owner(m_connection, m_compositor);
    const auto reply = x11::owned(xcb_get_selection_owner_reply(m_connection, cookie, nullptr));
    return reply && reply->owner != XCB_NONE;
}

void X11WindowShape::apply(uint8_t kind, const QList<xcb_rectangle_t>& rectangles)
{
    const auto* extension = xcb_get_extension_data(m_connection, &xcb_shape_id);
    if (extension == nullptr || extension->present == 0)
        return;
    xcb_shape_rectangles(m_connection, XCB_SHAPE_SO_SET, kind, XCB_CLIP_ORDERING_YX_BANDED, m_window, 0, 0,
        static_cast<uint32_t>(rectangles.size()), rectangles.constData());
}

void X11WindowShape::applyBounding()
{
    if (!m_rows)
        return;
    if (m_isComposited)
        xcb_shape_mask(
            m_connection, XCB_SHAPE_SO_SET, XCB_SHAPE_SK_BOUNDING, m_window, 0, 0, XCB_PIXMAP_NONE);
    else
        apply(XCB_SHAPE_SK_BOUNDING, *m_rows);
}

} // namespace nimbarrow
