#include "linux/pasteboard/PipeDeliveries.h"

#include <algorithm>
#include <cerrno>
#include <fcntl.h>
#include <iterator>
#include <unistd.h>

namespace nimbarrow {

PipeDeliveries::~PipeDeliveries()
{
    for (const auto& delivery : m_deliveries)
        ::close(delivery.file);
}

void PipeDeliveries::add(int file, const QByteArray& bytes)
{
    if (m_deliveries.size() >= mostDeliveries)
        drop(m_deliveries.begin());
    ::fcntl(file, F_SETFL, ::fcntl(file, F_GETFL) | O_NONBLOCK);
    m_deliveries.push_back({ file, bytes, 0, Instant::clock::now() + deliveryStall });
}

void PipeDeliveries::addTo(std::vector<pollfd>& sources) const
{
    for (const auto& delivery : m_deliveries)
        sources.push_back({ delivery.file, POLLOUT, 0 });
}

void PipeDeliveries::send()
{
    for (auto delivery = m_deliveries.begin(); delivery != m_deliveries.end();)
        delivery = sendNext(*delivery) ? drop(delivery) : std::next(delivery);
}

bool PipeDeliveries::sendNext(Delivery& delivery)
{
    // As much as a pipe holds; then it is the next one's turn.
    static constexpr qsizetype mostAtOnce = qsizetype(64) << 10;
    const auto size = std::min(mostAtOnce, delivery.bytes.size() - delivery.sent);
    if (size == 0)
        return true;
    const auto length
        = ::write(delivery.file, delivery.bytes.constData() + delivery.sent, static_cast<std::size_t>(size));
    if (length < 0)
        return errno != EAGAIN && errno != EINTR;
    delivery.sent += length;
    delivery.stallEnd = Instant::clock::now() + deliveryStall;
    return delivery.sent == delivery.bytes.size();
}

PipeDeliveries::Deliveries::iterator PipeDeliveries::drop(Deliveries::iterator delivery)
{
    ::close(delivery->file);
    return m_deliveries.erase(delivery);
}

void PipeDeliveries::expire(Instant now)
{
    for (auto delivery = m_deliveries.begin(); delivery != m_deliveries.end();)
        delivery = now >= delivery->stallEnd ? drop(delivery) : std::next(delivery);
}

PasteboardInstant PipeDeliveries::deadline() const
{
    auto first = Instant::max();
    for (const auto& delivery : m_deliveries)
        first = std::min(first, delivery.stallEnd);
    return first;
}

} // namespace nimbarrow
