#pragma once

#include "linux/pasteboard/PasteboardReading.h"
#include "linux/pasteboard/PipeTransfer.h"

#include <functional>
#include <poll.h>

namespace nimbarrow {

/// Reads an offer whose owner has listed what it has and gives each form through a pipe.
class WaylandOfferReading final : public PasteboardReading<PipeTransfer> {
public:
    /// Has the owner write one form into a file, which stays the caller's.
    using Request = std::function<void(const QByteArray& type, int file)>;

    WaylandOfferReading(const QStringList& types, const PasteboardLimits& limits, Request request);

    /// Adds what it waits for.
    void addTo(std::vector<pollfd>& sources) const;
    /// Takes what has come.
    void receive();

    /// Another offer has taken the place of this one.
    void supersede() { setSuperseded(); }

private:
    [[nodiscard]] std::unique_ptr<PipeTransfer> ask(
        const QString& target, qsizetype room, const PasteboardLimits& limits) override;

    Request m_request;
};

} // namespace nimbarrow
