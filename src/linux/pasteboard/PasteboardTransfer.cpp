#include "linux/pasteboard/PasteboardTransfer.h"

#include <algorithm>

namespace nimbarrow {

PasteboardTransfer::PasteboardTransfer(qsizetype room, const PasteboardLimits& limits)
    : m_room(room)
    , m_stall(limits.stall)
    , m_end(Instant::clock::now() + limits.whole)
    , m_stallEnd(Instant::clock::now() + limits.stall)
{
}

void PasteboardTransfer::grow()
{
    m_stallEnd = Instant::clock::now() + m_stall;
    if (m_state == State::Asked)
        m_state = State::Growing;
}

void PasteboardTransfer::keep(const QByteArray& piece, bool cut)
{
    grow();
    if (m_state == State::Draining)
        return;
    m_bytes += piece;
    m_cut = cut;
    if (m_cut)
        m_state = State::Draining;
}

void PasteboardTransfer::forget()
{
    m_room = 0;
    m_bytes.clear();
}

void PasteboardTransfer::expire(Instant now)
{
    if (m_state != State::Done && now >= deadline())
        fail();
}

PasteboardInstant PasteboardTransfer::deadline() const
{
    return m_state == State::Done ? Instant::max() : std::min(m_end, m_stallEnd);
}

void PasteboardTransfer::fail()
{
    // Half of a text or an image is not what was copied.
    if (m_state != State::Draining)
        m_bytes.clear();
    m_state = State::Done;
}

} // namespace nimbarrow
