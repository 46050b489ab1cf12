#pragma once

#include "linux/pasteboard/PasteboardReading.h"
#include "linux/pasteboard/X11PasteboardTransfer.h"

namespace nimbarrow {

/// Reads what one owner of the selection offers: first the names, then the forms that are needed.
class X11PasteboardReading final : public PasteboardReading<X11PasteboardTransfer> {
public:
    X11PasteboardReading(X11PasteboardConnection& connection, xcb_atom_t selection, xcb_window_t owner,
        xcb_timestamp_t time, const PasteboardLimits& limits);

    /// Reads of an owner who has listed already what it has.
    X11PasteboardReading(X11PasteboardConnection& connection, xcb_atom_t selection,
        const QStringList& targets, xcb_timestamp_t time, const PasteboardLimits& limits);

    /// True when the event was for this reading.
    [[nodiscard]] bool handle(const xcb_generic_event_t& event);

    /// Somebody else owns the selection since the request with this sequence number.
    void supersede(xcb_window_t newOwner, uint32_t sequence);

private:
    [[nodiscard]] std::unique_ptr<X11PasteboardTransfer> ask(
        const QString& target, qsizetype room, const PasteboardLimits& limits) override;
    [[nodiscard]] QStringList targets(const X11PasteboardTransfer& listing) override;

    X11PasteboardConnection& m_connection;
    xcb_atom_t m_selection;
    xcb_window_t m_owner;
    xcb_timestamp_t m_time;
};

} // namespace nimbarrow
