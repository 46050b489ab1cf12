#pragma once

#include "linux/pasteboard/PasteboardLimits.h"
#include "linux/pasteboard/X11PasteboardConnection.h"

#include <list>

namespace nimbarrow {

/// Owns the selection for the program and answers those who paste, piece by piece where it is much.
class X11PasteboardOwner {
public:
    using Instant = PasteboardInstant;

    X11PasteboardOwner(X11PasteboardConnection& connection, xcb_atom_t selection);

    [[nodiscard]] xcb_window_t window() const { return m_window; }

    /// Becomes the owner of `content`: bytes by target.
    void claim(const QHash<QByteArray, QByteArray>& content);
    void add(const QByteArray& target, const QByteArray& bytes);

    /// The server's time of the claim, for those who ask.
    void setTime(xcb_timestamp_t time) { m_time = time; }

    /// Somebody else owns the selection. What is on its way out still arrives.
    void release() { m_content.clear(); }

    /// Asks the clipboard manager to take over all of the content. Nothing happens where there is no content
    /// of ours or no manager.
    void save();
    /// Until the manager has said that it is done, and everybody has what is on its way. A manager may own
    /// the selection before it has all of it.
    [[nodiscard]] bool isGiving() const { return m_saving || !m_deliveries.empty(); }

    void handle(const xcb_generic_event_t& event);
    void expire(Instant now);
    [[nodiscard]] Instant deadline() const;

private:
    /// Content on its way to a requestor that takes it piece by piece.
    struct Delivery {
        xcb_window_t requestor;
        xcb_atom_t property;
        xcb_atom_t target;
        QByteArray bytes;
        qsizetype sent;
        Instant stallEnd;
    };
    using Deliveries = std::list<Delivery>;

    void answer(const xcb_selection_request_event_t& request);
    [[nodiscard]] bool convert(xcb_window_t requestor, xcb_atom_t target, xcb_atom_t property);
    [[nodiscard]] bool convertMultiple(xcb_window_t requestor, xcb_atom_t property);
    void sendNext(Deliveries::iterator delivery);
    Deliveries::iterator drop(Deliveries::iterator delivery);

    X11PasteboardConnection& m_connection;
    xcb_atom_t m_selection;
    xcb_window_t m_window;
    xcb_timestamp_t m_time = XCB_CURRENT_TIME;
    QHash<xcb_atom_t, QByteArray> m_content;
    bool m_saving = false;
    Deliveries m_deliveries;
};

} // namespace nimbarrow
