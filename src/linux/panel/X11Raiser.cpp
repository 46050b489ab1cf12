#include "linux/panel/X11Raiser.h"

#include "linux/display/X11Properties.h"
#include "linux/panel/X11Cover.h"

#include <QGuiApplication>
#include <QWindow>

namespace nimbarrow {
namespace {

constexpr auto mostRaises = 8;
constexpr auto periodMilliseconds = 1000;

} // namespace

X11Raiser::X11Raiser(xcb_connection_t* connection, QWindow& window, X11Cover& cover)
    : m_connection(connection)
    , m_window(window)
    , m_cover(cover)
    , m_id(static_cast<xcb_window_t>(window.winId()))
    , m_stacking(x11::atom(connection, "_NET_CLIENT_LIST_STACKING"))
    , m_active(x11::atom(connection, "_NET_ACTIVE_WINDOW"))
{
    // To a server with the composite extension no translucent window is ever obscured, so there only the
    // root's properties tell.
    x11::addEventMask(connection, x11::rootWindow(connection), XCB_EVENT_MASK_PROPERTY_CHANGE);
    x11::addEventMask(connection, m_id, XCB_EVENT_MASK_VISIBILITY_CHANGE);
    m_later.setSingleShot(true);
    QObject::connect(&m_later, &QTimer::timeout, &m_later, [this] { raise(); });
    qGuiApp->installNativeEventFilter(this);
}

X11Raiser::~X11Raiser()
{
    qGuiApp->removeNativeEventFilter(this);
}

bool X11Raiser::nativeEventFilter(const QByteArray& type, void* message, qintptr* /*result*/)
{
    if (type != "xcb_generic_event_t")
        return false;
    const auto* event = static_cast<const xcb_generic_event_t*>(message);
    switch (event->response_type & 0x7f) {
    case XCB_PROPERTY_NOTIFY: {
        const auto name = reinterpret_cast<const xcb_property_notify_event_t*>(event)->atom;
        if (name == m_stacking || name == m_active)
            raise();
        break;
    }
    case XCB_VISIBILITY_NOTIFY: {
        const auto* notify = reinterpret_cast<const xcb_visibility_notify_event_t*>(event);
        if (notify->window == m_id && notify->state != XCB_VISIBILITY_UNOBSCURED)
            raise();
        break;
    }
    default: break;
    }
    return false;
}

void X11Raiser::raise()
{
    if (!m_window.isVisible() || m_later.isActive() || m_cover.isLockedNow())
        return;
    if (!m_since.isValid() || m_since.hasExpired(periodMilliseconds)) {
        m_since.start();
        m_count = 0;
    }
    if (m_count == mostRaises) {
        m_since.invalidate();
        m_later.start(periodMilliseconds);
        return;
    }
    ++m_count;
    m_window.raise();
    // Qt sends it with the next event it handles; after a timer that may be long.
    xcb_flush(m_connection);
}

} // namespace nimbarrow
