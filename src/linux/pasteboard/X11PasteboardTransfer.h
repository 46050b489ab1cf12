#pragma once

#include "linux/pasteboard/PasteboardTransfer.h"
#include "linux/pasteboard/X11PasteboardConnection.h"

namespace nimbarrow {

/// One target of the selection on its way in, at once or piece by piece.
class X11PasteboardTransfer final : public PasteboardTransfer {
public:
    /// Asks the owner. `time` is the server's time of the owner's claim.
    X11PasteboardTransfer(X11PasteboardConnection& connection, xcb_atom_t selection, xcb_atom_t target,
        xcb_timestamp_t time, qsizetype room, const PasteboardLimits& limits);
    ~X11PasteboardTransfer() override;
    Q_DISABLE_COPY_MOVE(X11PasteboardTransfer)

    [[nodiscard]] bool handle(const xcb_generic_event_t& event);

    /// True when the server came to the request only after the one with this sequence number.
    [[nodiscard]] bool askedAfter(uint32_t sequence) const
    {
        return static_cast<int32_t>(m_sequence - sequence) > 0;
    }

private:
    void takeAnswer(const xcb_selection_notify_event_t& event);
    void takePiece();

    X11PasteboardConnection& m_connection;
    xcb_window_t m_window;
    xcb_atom_t m_property;
    xcb_atom_t m_target;
    uint32_t m_sequence;
};

} // namespace nimbarrow
