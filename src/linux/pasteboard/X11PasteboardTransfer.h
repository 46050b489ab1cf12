#pragma once

#include "linux/pasteboard/X11PasteboardConnection.h"

namespace nimbarrow {

/// One target of the selection on its way in, at once or piece by piece. What exceeds the bound is still
/// taken from its owner, who may be unable to stop, but not kept.
class X11PasteboardTransfer {
public:
    using Instant = X11PasteboardConnection::Instant;

    /// Asks the owner. `time` is the server's time of the owner's claim.
    X11PasteboardTransfer(X11PasteboardConnection& connection, xcb_atom_t selection, xcb_atom_t target,
        xcb_timestamp_t time, qsizetype room, const X11PasteboardLimits& limits);
    ~X11PasteboardTransfer();
    Q_DISABLE_COPY_MOVE(X11PasteboardTransfer)

    [[nodiscard]] bool handle(const xcb_generic_event_t& event);
    void expire(Instant now);
    [[nodiscard]] Instant deadline() const;

    /// Keeps nothing of what is still to come.
    void forget();

    /// The owner has begun to answer, so what comes is of the content that was asked for.
    [[nodiscard]] bool answered() const { return m_state != State::Asked; }

    /// True when the server came to the request only after the one with this sequence number.
    [[nodiscard]] bool askedAfter(uint32_t sequence) const
    {
        return static_cast<int32_t>(m_sequence - sequence) > 0;
    }

    /// True when `bytes` are all that there will be.
    [[nodiscard]] bool complete() const { return m_state == State::Done || m_state == State::Draining; }

    /// True when nothing more is expected of the owner.
    [[nodiscard]] bool over() const { return m_state == State::Done; }

    [[nodiscard]] bool cut() const { return m_cut; }
    [[nodiscard]] const QByteArray& bytes() const { return m_bytes; }

private:
    enum class State { Asked, Growing, Draining, Done };

    void takeAnswer(const xcb_selection_notify_event_t& event);
    void takePiece();
    void fail();

    X11PasteboardConnection& m_connection;
    xcb_window_t m_window;
    xcb_atom_t m_property;
    xcb_atom_t m_target;
    uint32_t m_sequence;
    qsizetype m_room;
    std::chrono::milliseconds m_stall;
    Instant m_end;
    Instant m_stallEnd;
    State m_state = State::Asked;
    QByteArray m_bytes;
    bool m_cut = false;
};

} // namespace nimbarrow
