#pragma once

#include "linux/pasteboard/PasteboardTransfer.h"

namespace nimbarrow {

/// One form of an offer that comes through a pipe. The owner gets the other end and ends it.
class PipeTransfer final : public PasteboardTransfer {
public:
    PipeTransfer(qsizetype room, const PasteboardLimits& limits);
    ~PipeTransfer() override;
    Q_DISABLE_COPY_MOVE(PipeTransfer)

    /// The owner's end, until `closeGivenEnd`; -1 where there is none.
    [[nodiscard]] int givenEnd() const { return m_givenEnd; }
    void closeGivenEnd();

    /// To wait for; -1 when nothing comes any more.
    [[nodiscard]] int file() const { return over() ? -1 : m_file; }

    /// Takes what has come, without waiting, and at most a megabyte of it.
    void receive();

private:
    int m_file = -1;
    int m_givenEnd = -1;
};

} // namespace nimbarrow
