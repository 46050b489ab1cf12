#include "linux/pasteboard/DropReading.h"

#include "linux/pasteboard/MimeTypes.h"

#include <algorithm>

namespace nimbarrow {

namespace {

using mimetypes::Form;

/// Of each form that can be read only the best.
QStringList withoutSubstitutes(const QStringList& types)
{
    auto kept = types;
    for (const auto form : { Form::FileList, Form::Text, Form::Image, Form::Link }) {
        const auto offered = mimetypes::bestFirst(types, form);
        for (qsizetype index = 1; index < offered.size(); ++index)
            kept.removeAll(offered.at(index));
    }
    return kept;
}

} // namespace

DropReading::DropReading(const QStringList& types, const PasteboardLimits& limits, const Request& request)
    : m_reader(types.size() > mostTargets ? QStringList() : withoutSubstitutes(types))
{
    for (const auto& target : m_reader.wanted()) {
        auto transfer = std::make_unique<PipeTransfer>(OfferReader::room(target, limits), limits);
        if (transfer->givenEnd() >= 0)
            request(target.toUtf8(), transfer->givenEnd());
        transfer->closeGivenEnd();
        m_transfers.emplace(target, std::move(transfer));
    }
}

void DropReading::addTo(std::vector<pollfd>& sources) const
{
    for (const auto& [target, transfer] : m_transfers) {
        if (transfer->file() >= 0)
            sources.push_back({ transfer->file(), POLLIN, 0 });
    }
}

void DropReading::receive()
{
    for (const auto& [target, transfer] : m_transfers) {
        if (transfer->file() >= 0)
            transfer->receive();
    }
}

void DropReading::expire(Instant now)
{
    for (const auto& [target, transfer] : m_transfers)
        transfer->expire(now);
}

PasteboardInstant DropReading::deadline() const
{
    auto first = Instant::max();
    for (const auto& [target, transfer] : m_transfers)
        first = std::min(first, transfer->deadline());
    return first;
}

std::optional<PasteboardSnapshot> DropReading::takeResult()
{
    while (!m_finished && !m_reader.next().isEmpty()) {
        const auto& transfer = *m_transfers.at(m_reader.next());
        if (!transfer.complete())
            return {};
        m_reader.take(transfer.bytes(), transfer.cut());
    }
    if (std::exchange(m_finished, true))
        return {};
    // What is not needed is taken off the owner's hands all the same.
    for (const auto& [target, transfer] : m_transfers)
        transfer->forget();
    return m_reader.snapshot();
}

bool DropReading::over() const
{
    return m_finished && std::all_of(m_transfers.begin(), m_transfers.end(), [](const auto& entry) {
        return entry.second->over();
    });
}

} // namespace nimbarrow
