#include "linux/pasteboard/X11DropReader.h"

#include "linux/display/X11Properties.h"
#include "linux/pasteboard/MimeTypes.h"

#include <QCoreApplication>
#include <QMimeData>
#include <QPointer>

#include <algorithm>
#include <iterator>

namespace nimbarrow {

X11DropReader::X11DropReader(X11Pasteboard& pasteboard)
    : m_pasteboard(pasteboard)
    , m_enter(x11::atom(x11::qtConnection(), "XdndEnter"))
    , m_leave(x11::atom(x11::qtConnection(), "XdndLeave"))
    , m_drop(x11::atom(x11::qtConnection(), "XdndDrop"))
{
    QCoreApplication::instance()->installNativeEventFilter(this);
}

QStringList X11DropReader::types(const QMimeData& drag) const
{
    return mimetypes::pasteboardTypesOf(drag.formats());
}

void X11DropReader::read(const QMimeData& /*drop*/, const Done& done)
{
    done(SnapshotContent(m_content));
}

bool X11DropReader::nativeEventFilter(const QByteArray& eventType, void* message, qintptr* /*result*/)
{
    if (eventType != "xcb_generic_event_t"
        || (static_cast<xcb_generic_event_t*>(message)->response_type & 0x7f) != XCB_CLIENT_MESSAGE)
        return false;
    const auto& event = *static_cast<xcb_client_message_event_t*>(message);
    const auto source = event.data.data32[0];
    if (event.type == m_enter) {
        forget();
        // Three types stand in the message; more than that in a property of the source.
        const bool isWhole = (event.data.data32[1] & 1) == 0;
        m_drag.source = source;
        if (isWhole)
            std::copy_if(event.data.data32 + 2, std::end(event.data.data32),
                std::back_inserter(m_drag.targets), [](xcb_atom_t atom) { return atom != XCB_ATOM_NONE; });
    } else if (event.type == m_leave && source == m_drag.source) {
        forget();
    } else if (event.type == m_drop && source == m_drag.source) {
        if (m_delivering) {
            forget();
            // What was dropped may be large, and once Qt has seen the drop nobody asks for it again.
            QMetaObject::invokeMethod(
                this, [this] { m_content = {}; }, Qt::QueuedConnection);
            return false;
        }
        if (!m_held)
            holdBack(event);
        return true;
    }
    return false;
}

void X11DropReader::forget()
{
    m_drag = {};
    m_held.reset();
    m_delivering = false;
}

void X11DropReader::holdBack(const xcb_client_message_event_t& drop)
{
    m_held = drop;
    m_drag.time = drop.data.data32[2];
    m_pasteboard.readDrop(m_drag, [this, drop, alive = QPointer(this)](const PasteboardSnapshot& content) {
        // Another drag may have begun since.
        if (!alive || !m_held || m_held->data.data32[0] != drop.data.data32[0]
            || m_held->data.data32[2] != m_drag.time)
            return;
        m_content = content;
        deliver();
    });
}

void X11DropReader::deliver()
{
    m_delivering = true;
    auto* const connection = x11::qtConnection();
    xcb_send_event(
        connection, 0, m_held->window, XCB_EVENT_MASK_NO_EVENT, reinterpret_cast<const char*>(&*m_held));
    xcb_flush(connection);
}

} // namespace nimbarrow
