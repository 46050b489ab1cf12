#include "linux/pasteboard/X11PasteboardTransfer.h"

namespace nimbarrow {

X11PasteboardTransfer::X11PasteboardTransfer(X11PasteboardConnection& connection, xcb_atom_t selection,
    xcb_atom_t target, xcb_timestamp_t time, qsizetype room, const PasteboardLimits& limits)
    : PasteboardTransfer(room, limits)
    , m_connection(connection)
    , m_window(connection.makeWindow())
    , m_property(connection.atom("NIMBARROW_CONTENT"))
    , m_target(target)
    , m_sequence(
          xcb_convert_selection(connection.get(), m_window, selection, target, m_property, time).sequence)
{
}

X11PasteboardTransfer::~X11PasteboardTransfer()
{
    xcb_destroy_window(m_connection.get(), m_window);
}

bool X11PasteboardTransfer::handle(const xcb_generic_event_t& event)
{
    const auto type = event.response_type & 0x7f;
    if (type == XCB_SELECTION_NOTIFY) {
        const auto& answer = reinterpret_cast<const xcb_selection_notify_event_t&>(event);
        if (answer.requestor != m_window)
            return false;
        if (!answered() && answer.target == m_target)
            takeAnswer(answer);
        return true;
    }
    if (type == XCB_PROPERTY_NOTIFY) {
        const auto& change = reinterpret_cast<const xcb_property_notify_event_t&>(event);
        if (change.window != m_window)
            return false;
        // The answer's own property is reported too, before the answer; it is no piece.
        if (change.atom == m_property && change.state == XCB_PROPERTY_NEW_VALUE && answered())
            takePiece();
        return true;
    }
    return false;
}

void X11PasteboardTransfer::takeAnswer(const xcb_selection_notify_event_t& event)
{
    if (event.property == XCB_ATOM_NONE) {
        fail();
        return;
    }
    const auto property = m_connection.takeProperty(m_window, m_property, room());
    if (property.type == m_connection.atom("INCR")) {
        // Deleting the property, which has just been done, tells the owner to begin.
        grow();
        return;
    }
    keep(property.bytes, property.cut);
    end();
}

void X11PasteboardTransfer::takePiece()
{
    if (over())
        return;
    const bool draining = complete();
    const auto piece = m_connection.takeProperty(m_window, m_property, draining ? 4 : room());
    if (piece.type == XCB_ATOM_NONE)
        return;
    if (piece.bytes.isEmpty() && !piece.cut)
        end();
    else
        keep(piece.bytes, piece.cut);
}

} // namespace nimbarrow
