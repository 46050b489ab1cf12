#include "linux/panel/X11PanelWindow.h"

#include "linux/display/X11Properties.h"
#include "linux/panel/CoveredRows.h"
#include "linux/panel/PanelRoom.h"
#include "qt/FlippedAxis.h"

#include <QCursor>
#include <QGuiApplication>
#include <QKeyEvent>
#include <QQuickWindow>
#include <QTimer>

#include <array>

using namespace std::chrono_literals;

namespace nimbarrow {
namespace {

// Sums of points leave crumbs that must not cost a whole pixel.
constexpr auto crumb = 1.0 / 64;

// A compositor around the X server takes the pointer for gone from a window that is on its way to another
// place and size, and finds it again only when it moves. So there it has room for the surface from the
// beginning.
constexpr QSize nestedRoom(512, 340); // points

// The wheel's buttons come after it.
constexpr auto lastButton = 3U;
// How long a window manager may take to give the keyboard to the window that was clicked.
constexpr auto clickPatience = 150ms;

xcb_window_t created(QQuickWindow& window)
{
    window.setFlags(
        Qt::FramelessWindowHint | Qt::WindowStaysOnTopHint | Qt::Tool | Qt::BypassWindowManagerHint);
    auto format = window.requestedFormat();
    format.setAlphaBufferSize(8);
    window.setFormat(format);
    window.setColor(Qt::transparent);
    // Nobody sees it, but a screen reader says it.
    window.setTitle(QGuiApplication::applicationDisplayName());
    window.create();
    return static_cast<xcb_window_t>(window.winId());
}

// Only compositing managers read it: they draw no shadow around a dock and do not fade it.
void setType(xcb_connection_t* connection, xcb_window_t window)
{
    const std::array types { x11::atom(connection, "_NET_WM_WINDOW_TYPE_DOCK"),
        x11::atom(connection, "_NET_WM_WINDOW_TYPE_NOTIFICATION") };
    xcb_change_property(connection, XCB_PROP_MODE_REPLACE, window,
        x11::atom(connection, "_NET_WM_WINDOW_TYPE"), XCB_ATOM_ATOM, 32, types.size(), types.data());
}

} // namespace

X11PanelWindow::X11PanelWindow(QQuickWindow& window, bool isNested)
    : m_window(window)
    , m_isNested(isNested)
    , m_connection(x11::qtConnection())
    , m_id(created(window))
    , m_shape(m_connection, m_id)
    , m_cover(m_connection, window)
    , m_raiser(m_connection, window, m_cover)
    , m_focus(m_connection, m_id, isNested)
    , m_keys(window, [this](quint32 code) { return m_keyboard.letterAt(code); })
    , m_inputOpcode(x11::majorOpcode(m_connection, &xcb_input_id))
{
    setType(m_connection, m_id);
    repeatWithoutReleases(m_connection);
    window.installEventFilter(this);
    connect(&window, &QWindow::screenChanged, this, &X11PanelWindow::shapeToOutline);
    connect(&window, &QWindow::widthChanged, this, &X11PanelWindow::followRestingPointer);
    qGuiApp->installNativeEventFilter(this);
}

X11PanelWindow::~X11PanelWindow()
{
    qGuiApp->removeNativeEventFilter(this);
    resignKey();
}

void X11PanelWindow::setFrame(const ScreenRect& frame)
{
    const auto wanted = flipped(frame.grown(-crumb)).toAlignedRect();
    m_window.setGeometry(m_isNested ? panelRoom(m_window.geometry(), wanted, nestedRoom) : wanted);
    xcb_flush(m_connection);
}

void X11PanelWindow::orderFront()
{
    if (m_cover.isLockedNow())
        return;
    m_window.show();
    m_window.raise();
    // Qt sends requests with the next event it handles, which may be long in coming.
    xcb_flush(m_connection);
}

void X11PanelWindow::orderOut()
{
    // The server would put the focus somewhere when its window goes.
    resignKey();
    m_window.hide();
    xcb_flush(m_connection);
}

void X11PanelWindow::makeKey()
{
    if (m_isKey)
        return;
    m_keyboard = X11Keyboard(m_connection);
    m_keys.forget();
    m_hasReturnedKey = false;
    m_isKey = m_focus.take();
    listenToPresses(m_isKey);
}

void X11PanelWindow::resignKey()
{
    if (!m_isKey)
        return;
    endKey(x11::serverTime());
}

void X11PanelWindow::endKey(xcb_timestamp_t time)
{
    m_isKey = false;
    listenToPresses(false);
    m_hasReturnedKey = m_focus.giveBack(time);
}

void X11PanelWindow::listenToPresses(bool listen)
{
    if (m_inputOpcode == 0)
        return;
    struct {
        xcb_input_event_mask_t head { XCB_INPUT_DEVICE_ALL_MASTER, 1 };
        uint32_t events = 0;
    } mask;
    mask.events = listen ? uint32_t(XCB_INPUT_XI_EVENT_MASK_RAW_BUTTON_PRESS) : 0U;
    xcb_input_xi_select_events(m_connection, x11::rootWindow(m_connection), 1, &mask.head);
    xcb_flush(m_connection);
}

void X11PanelWindow::followPress(const xcb_input_raw_button_press_event_t& press)
{
    const auto pointer = x11::pointer(m_connection);
    if (press.detail > lastButton || !pointer || pointer->child == m_id)
        return;
    // A window that wants the keyboard has got it by then. The bare desktop and a dock do not want it.
    QTimer::singleShot(clickPatience, this, [this, time = press.time] {
        if (!m_isKey || !m_focus.isOurs())
            return;
        endKey(time);
        Q_EMIT resignedKey();
    });
}

// The server says nothing of a pointer that rests while the window around it gets another left edge. Qt would
// take it to be over what stands now where it has last seen it. The window jumps to its size before the
// surface grows in it or after it has shrunk, so the server is asked once for a motion, never in the midst.
void X11PanelWindow::followRestingPointer()
{
    const QPointF pointer(QCursor::pos());
    const auto place = m_window.mapFromGlobal(pointer);
    if (!QRectF({}, m_window.size()).contains(place))
        return;
    QHoverEvent hover(QEvent::HoverMove, place, pointer, place);
    QCoreApplication::sendEvent(&m_window, &hover);
}

void X11PanelWindow::setOutline(const QPainterPath& outline)
{
    m_outline = outline;
    shapeToOutline();
}

void X11PanelWindow::shapeToOutline()
{
    if (m_outline)
        m_shape.setRows(coveredRows(*m_outline, m_window.devicePixelRatio()));
}

bool X11PanelWindow::eventFilter(QObject* watched, QEvent* event)
{
    const auto isKeyEvent = event->type() == QEvent::KeyPress || event->type() == QEvent::KeyRelease;
    if (watched != &m_window || !m_isKey || !isKeyEvent)
        return PanelWindow::eventFilter(watched, event);
    const auto told = m_keys.follow(static_cast<QKeyEvent&>(*event));
    if (told && event->type() == QEvent::KeyPress)
        Q_EMIT keyPressed(*told);
    else if (told)
        Q_EMIT keyReleased(*told);
    return true;
}

bool X11PanelWindow::nativeEventFilter(const QByteArray& type, void* message, qintptr* /*result*/)
{
    if (!m_isKey || type != "xcb_generic_event_t")
        return false;
    const auto* event = static_cast<const xcb_generic_event_t*>(message);
    const auto kind = event->response_type & 0x7f;
    const auto* generic = reinterpret_cast<const xcb_ge_generic_event_t*>(event);
    if (kind == XCB_GE_GENERIC && generic->extension == m_inputOpcode
        && generic->event_type == XCB_INPUT_RAW_BUTTON_PRESS)
        followPress(*reinterpret_cast<const xcb_input_raw_button_press_event_t*>(event));
    if (kind != XCB_FOCUS_OUT)
        return false;
    const auto* focusOut = reinterpret_cast<const xcb_focus_out_event_t*>(event);
    // A grabbed keyboard, such as by the hot key, is no change of the focus. Anything else may be an old
    // story from before the focus was taken again, so the server has the last word.
    const auto isGrab = focusOut->mode == XCB_NOTIFY_MODE_GRAB || focusOut->mode == XCB_NOTIFY_MODE_UNGRAB;
    if (focusOut->event != m_id || isGrab || m_focus.isOurs())
        return false;
    m_isKey = false;
    listenToPresses(false);
    Q_EMIT resignedKey();
    return false;
}

} // namespace nimbarrow
