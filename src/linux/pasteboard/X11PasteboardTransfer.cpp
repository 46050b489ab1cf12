#include "linux/pasteboard/X11PasteboardTransfer.h"

#include <algorithm>

namespace nimbarrow {

X11PasteboardTransfer::X11PasteboardTransfer(X11PasteboardConnection& connection, xcb_atom_t selection,
    xcb_atom_t target, xcb_timestamp_t time, qsizetype room, const X11PasteboardLimits& limits)
    : m_connection(connection)
    , m_window(connection.makeWindow())
    , m_property(connection.atom("NIMBARROW_CONTENT"))
    , m_target(target)
    , m_sequence(
          xcb_convert_selection(connection.get(), m_window, selection, target, m_property, time).sequence)
    , m_room(room)
    , m_stall(limits.stall)
    , m_end(Instant::clock::now() + limits.whole)
    , m_stallEnd(Instant::clock::now() + limits.stall)
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
        if (m_state == State::Asked && answer.target == m_target)
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
    auto property = m_connection.takeProperty(m_window, m_property, m_room);
    m_stallEnd = Instant::clock::now() + m_stall;
    if (property.type == m_connection.atom("INCR")) {
        // Deleting the property, which has just been done, tells the owner to begin.
        m_state = State::Growing;
        return;
    }
    m_bytes = std::move(property.bytes);
    m_cut = property.cut;
    m_state = State::Done;
}

void X11PasteboardTransfer::takePiece()
{
    if (m_state == State::Done)
        return;
    const bool draining = m_state == State::Draining;
    const auto piece
        = m_connection.takeProperty(m_window, m_property, draining ? 4 : m_room - m_bytes.size());
    if (piece.type == XCB_ATOM_NONE)
        return;
    m_stallEnd = Instant::clock::now() + m_stall;
    if (piece.bytes.isEmpty() && !piece.cut) {
        m_state = State::Done;
        return;
    }
    if (draining)
        return;
    m_bytes += piece.bytes;
    m_cut = piece.cut;
    if (m_cut)
        m_state = State::Draining;
}

void X11PasteboardTransfer::forget()
{
    m_room = 0;
    m_bytes.clear();
}

void X11PasteboardTransfer::expire(Instant now)
{
    if (m_state != State::Done && now >= deadline())
        fail();
}

X11PasteboardTransfer::Instant X11PasteboardTransfer::deadline() const
{
    return m_state == State::Done ? Instant::max() : std::min(m_end, m_stallEnd);
}

void X11PasteboardTransfer::fail()
{
    // Half of a text or an image is not what was copied.
    if (m_state != State::Draining)
        m_bytes.clear();
    m_state = State::Done;
}

} // namespace nimbarrow
