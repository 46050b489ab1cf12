#pragma once

#include "linux/pasteboard/PasteboardLimits.h"

#include <QByteArray>

namespace nimbarrow {

/// One form of an offer on its way in. What exceeds the bound is still taken from its owner, who may be
/// unable to stop, but not kept.
class PasteboardTransfer {
public:
    using Instant = PasteboardInstant;

    virtual ~PasteboardTransfer() = default;
    Q_DISABLE_COPY_MOVE(PasteboardTransfer)

    void expire(Instant now);
    [[nodiscard]] Instant deadline() const;

    /// Keeps nothing of what is still to come.
    void forget();

    /// The owner has begun to answer, so what comes is of the content that was asked for.
    [[nodiscard]] bool answered() const { return m_state != State::Asked; }

    /// True when `bytes` are all that there will be.
    [[nodiscard]] bool complete() const { return m_state == State::Done || m_state == State::Draining; }

    /// True when nothing more is expected of the owner.
    [[nodiscard]] bool over() const { return m_state == State::Done; }

    [[nodiscard]] bool cut() const { return m_cut; }
    [[nodiscard]] const QByteArray& bytes() const { return m_bytes; }

protected:
    enum class State { Asked, Growing, Draining, Done };

    PasteboardTransfer(qsizetype room, const PasteboardLimits& limits);

    [[nodiscard]] State state() const { return m_state; }
    /// How much more is kept, in bytes.
    [[nodiscard]] qsizetype room() const { return m_room - m_bytes.size(); }

    /// The owner lives, and more is to come.
    void grow();
    /// `cut` where a part had no room.
    void keep(const QByteArray& piece, bool cut);
    void end() { m_state = State::Done; }
    void fail();

private:
    qsizetype m_room;
    std::chrono::milliseconds m_stall;
    Instant m_end;
    Instant m_stallEnd;
    State m_state = State::Asked;
    QByteArray m_bytes;
    bool m_cut = false;
};

} // namespace nimbarrow
