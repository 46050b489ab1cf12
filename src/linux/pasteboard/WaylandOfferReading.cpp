#include "linux/pasteboard/WaylandOfferReading.h"

namespace nimbarrow {

WaylandOfferReading::WaylandOfferReading(
    const QStringList& types, const PasteboardLimits& limits, Request request)
    : PasteboardReading(limits)
    , m_request(std::move(request))
{
    read(types);
    // Without a pipe nothing will come that could move it on.
    advance();
}

std::unique_ptr<PipeTransfer> WaylandOfferReading::ask(
    const QString& target, qsizetype room, const PasteboardLimits& limits)
{
    auto transfer = std::make_unique<PipeTransfer>(room, limits);
    if (transfer->givenEnd() >= 0)
        m_request(target.toUtf8(), transfer->givenEnd());
    transfer->closeGivenEnd();
    return transfer;
}

void WaylandOfferReading::addTo(std::vector<pollfd>& sources) const
{
    for (const auto& transfer : transfers()) {
        if (transfer->file() >= 0)
            sources.push_back({ transfer->file(), POLLIN, 0 });
    }
}

void WaylandOfferReading::receive()
{
    for (const auto& transfer : transfers()) {
        if (transfer->file() >= 0)
            transfer->receive();
    }
    advance();
}

} // namespace nimbarrow
