#pragma once

#include "linux/pasteboard/PasteboardBed.h"
#include "linux/pasteboard/X11PasteboardConnection.h"

#include <poll.h>
#include <vector>

namespace nimbarrow {

/// Another program that copies on an X server.
class ForeignOwner final : public ClipboardOwner {
public:
    explicit ForeignOwner(const QByteArray& display, const QByteArray& selection = "CLIPBOARD")
        : m_connection(display)
        , m_selection(selection)
        , m_window(m_connection.makeWindow())
    {
    }

    ~ForeignOwner() override { stop(); }
    Q_DISABLE_COPY_MOVE(ForeignOwner)

    [[nodiscard]] xcb_window_t window() const { return m_window; }

    /// What the server refused, such as an answer to a window that is gone. It ends many a program.
    [[nodiscard]] int errors() const { return m_errors; }

private:
    void claim() override
    {
        xcb_set_selection_owner(
            m_connection.get(), m_window, m_connection.atom(m_selection), XCB_CURRENT_TIME);
        xcb_flush(m_connection.get());
    }

    void sync() override { m_connection.sync(); }

    void serve() override
    {
        while (!m_stop && m_connection.works()) {
            const X11PasteboardConnection::Reply<xcb_generic_event_t> event(
                xcb_poll_for_event(m_connection.get()));
            if (!event) {
                xcb_flush(m_connection.get());
                pollfd source { xcb_get_file_descriptor(m_connection.get()), POLLIN, 0 };
                poll(&source, 1, 5);
            } else if (event->response_type == 0) {
                ++m_errors;
            } else if ((event->response_type & 0x7f) == XCB_SELECTION_REQUEST) {
                answer(reinterpret_cast<const xcb_selection_request_event_t&>(*event));
            } else if ((event->response_type & 0x7f) == XCB_PROPERTY_NOTIFY) {
                const auto& change = reinterpret_cast<const xcb_property_notify_event_t&>(*event);
                if (change.state == XCB_PROPERTY_DELETE && change.window != m_window && m_incrTarget)
                    sendPiece(change.window, change.atom);
            }
        }
    }

    void answer(const xcb_selection_request_event_t& request)
    {
        auto* const xcb = m_connection.get();
        const bool listing = request.target == m_connection.atom("TARGETS");
        if (!listing)
            ++m_dataRequests;
        if (m_manner == (listing ? Manner::SilentOnTargets : Manner::SilentOnData))
            return;
        if (!listing && m_manner == Manner::Busy)
            m_goOn.acquire();
        xcb_selection_notify_event_t reply {};
        reply.response_type = XCB_SELECTION_NOTIFY;
        reply.requestor = request.requestor;
        reply.selection = request.selection;
        reply.target = request.target;
        reply.time = request.time;
        std::vector<xcb_atom_t> targets;
        for (const auto& [name, bytes] : m_offer) {
            targets.push_back(m_connection.atom(name));
            if (targets.back() != request.target)
                continue;
            reply.property = request.property;
            if (m_pieces > 0 && bytes.isEmpty()) {
                const uint32_t events = XCB_EVENT_MASK_PROPERTY_CHANGE;
                const uint32_t least = 1;
                m_incrTarget = request.target;
                xcb_change_window_attributes(xcb, request.requestor, XCB_CW_EVENT_MASK, &events);
                xcb_change_property(xcb, XCB_PROP_MODE_REPLACE, request.requestor, request.property,
                    m_connection.atom("INCR"), 32, 1, &least);
            } else {
                xcb_change_property(xcb, XCB_PROP_MODE_REPLACE, request.requestor, request.property,
                    request.target, 8, static_cast<uint32_t>(bytes.size()), bytes.constData());
            }
        }
        if (listing) {
            reply.property = request.property;
            xcb_change_property(xcb, XCB_PROP_MODE_REPLACE, request.requestor, request.property,
                XCB_ATOM_ATOM, 32, static_cast<uint32_t>(targets.size()), targets.data());
        }
        xcb_send_event(xcb, 0, request.requestor, 0, reinterpret_cast<const char*>(&reply));
        if (m_manner == Manner::HurriesOn) {
            m_manner = Manner::Polite;
            m_offer.emplaceBack("x-kde-passwordManagerHint", "secret");
            m_window = m_connection.makeWindow();
            claim();
        }
        if (!listing)
            claimNext();
        xcb_flush(xcb);
    }

    void sendPiece(xcb_window_t requestor, xcb_atom_t property)
    {
        if (m_manner == Manner::SilentAfterIncr)
            return;
        if (m_manner == Manner::DiesInIncr && m_piecesSent == 2) {
            m_stop = true;
            return;
        }
        const bool last = m_piecesSent >= m_pieces;
        xcb_change_property(m_connection.get(), XCB_PROP_MODE_REPLACE, requestor, property, m_incrTarget, 8,
            last ? 0 : static_cast<uint32_t>(m_piece.size()), m_piece.constData());
        xcb_flush(m_connection.get());
        if (last)
            m_incrTarget = XCB_ATOM_NONE;
        else
            ++m_piecesSent;
    }

    X11PasteboardConnection m_connection;
    QByteArray m_selection;
    xcb_window_t m_window;
    xcb_atom_t m_incrTarget = XCB_ATOM_NONE;
    std::atomic_int m_errors = 0;
};

} // namespace nimbarrow
