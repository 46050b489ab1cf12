#pragma once

#include "linux/pasteboard/OfferReader.h"
#include "linux/pasteboard/X11PasteboardTransfer.h"

#include <optional>
#include <vector>

namespace nimbarrow {

/// Reads what one owner of the selection offers: first the names, then the forms that are needed.
class X11PasteboardReading {
public:
    using Instant = X11PasteboardConnection::Instant;

    X11PasteboardReading(X11PasteboardConnection& connection, xcb_atom_t selection, xcb_window_t owner,
        xcb_timestamp_t time, const X11PasteboardLimits& limits);

    /// Reads of an owner who has listed already what it has.
    X11PasteboardReading(X11PasteboardConnection& connection, xcb_atom_t selection,
        const QStringList& targets, xcb_timestamp_t time, const X11PasteboardLimits& limits);

    /// True when the event was for this reading.
    [[nodiscard]] bool handle(const xcb_generic_event_t& event);
    void expire(Instant now);
    [[nodiscard]] Instant deadline() const;

    /// Somebody else owns the selection since the request with this sequence number: nothing more can be
    /// asked for, only awaited.
    void supersede(xcb_window_t newOwner, uint32_t sequence);

    /// The content, once, when all of it is there; an owner that fails gives an empty one.
    [[nodiscard]] std::optional<PasteboardSnapshot> takeResult();

    /// True when no content will come of it any more.
    [[nodiscard]] bool finished() const { return m_finished; }

    /// True when it is finished and nothing is expected of an owner.
    [[nodiscard]] bool over() const;

private:
    void ask(const QString& target);
    void advance();
    void finish();
    [[nodiscard]] qsizetype roomFor(const QString& target) const;

    X11PasteboardConnection& m_connection;
    xcb_atom_t m_selection;
    xcb_window_t m_owner;
    xcb_timestamp_t m_time;
    X11PasteboardLimits m_limits;
    Instant m_end;
    /// The last is the current one; those before it are being drained.
    std::vector<std::unique_ptr<X11PasteboardTransfer>> m_transfers;
    std::optional<OfferReader> m_reader;
    std::optional<PasteboardSnapshot> m_result;
    bool m_superseded = false;
    bool m_finished = false;
};

} // namespace nimbarrow
