#include "linux/pasteboard/PipeTransfer.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <fcntl.h>
#include <unistd.h>
#include <utility>

namespace nimbarrow {

PipeTransfer::PipeTransfer(qsizetype room, const PasteboardLimits& limits)
    : PasteboardTransfer(room, limits)
{
    std::array<int, 2> ends { -1, -1 };
    if (::pipe2(ends.data(), O_CLOEXEC) != 0) {
        fail();
        return;
    }
    m_file = ends[0];
    m_givenEnd = ends[1];
    // Of this end alone: many an owner expects to wait where it writes.
    ::fcntl(m_file, F_SETFL, O_NONBLOCK);
}

PipeTransfer::~PipeTransfer()
{
    closeGivenEnd();
    if (m_file >= 0)
        ::close(m_file);
}

void PipeTransfer::closeGivenEnd()
{
    if (m_givenEnd >= 0)
        ::close(std::exchange(m_givenEnd, -1));
}

void PipeTransfer::receive()
{
    static constexpr int mostPieces = 16;
    QByteArray piece(qsizetype(64) << 10, Qt::Uninitialized);
    for (int count = 0; count < mostPieces && !over(); ++count) {
        const auto length = ::read(m_file, piece.data(), static_cast<std::size_t>(piece.size()));
        if (length < 0 && errno == EINTR)
            continue;
        if (length < 0 && errno == EAGAIN)
            return;
        if (length < 0) {
            fail();
        } else if (length == 0) {
            end();
        } else {
            const auto kept = std::min<qsizetype>(length, room());
            keep(piece.first(kept), kept < length);
        }
    }
}

} // namespace nimbarrow
