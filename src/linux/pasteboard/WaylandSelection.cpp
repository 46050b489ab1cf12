#include "linux/pasteboard/WaylandSelection.h"

#include <QUuid>

#include <algorithm>
#include <cerrno>
#include <data-control-client.h>
#include <unistd.h>
#include <utility>
#include <wayland-client.h>

namespace nimbarrow {

namespace {

/// Begins the type that only offers of this process have; the number of the write follows. Such an offer is
/// the program's own even where a clipboard manager makes it anew.
const QByteArray& ownType()
{
    static const auto type
        = "application/x-nimbarrow-own;" + QUuid::createUuid().toByteArray(QUuid::Id128) + '.';
    return type;
}

} // namespace

WaylandSelection::WaylandSelection(const QByteArray& display, const PasteboardLimits& limits, Report report)
    : m_limits(limits)
    , m_report(std::move(report))
{
    connect(display);
}

void WaylandSelection::connect(const QByteArray& display)
{
    static constexpr zwlr_data_control_device_v1_listener listener {
        [](void* self, zwlr_data_control_device_v1*, zwlr_data_control_offer_v1* offer) {
            static_cast<WaylandSelection*>(self)->listenTo(offer);
        },
        [](void* data, zwlr_data_control_device_v1*, zwlr_data_control_offer_v1* offer) {
            auto* const self = static_cast<WaylandSelection*>(data);
            self->selectionChanged(self->takeOffer(offer));
        },
        [](void* self, zwlr_data_control_device_v1*) {
            static_cast<WaylandSelection*>(self)->m_finished = true;
        },
        [](void* self, zwlr_data_control_device_v1*, zwlr_data_control_offer_v1* offer) {
            const auto primary = static_cast<WaylandSelection*>(self)->takeOffer(offer);
        },
    };
    m_display = wl_display_connect(display.isEmpty() ? nullptr : display.constData());
    if (!m_display)
        return;
    m_answers = wl_display_create_queue(m_display);
    const WaylandRegistry registry(m_display);
    m_seat = registry.bind<wl_seat>(wl_seat_interface, 1);
    m_control = std::make_unique<WaylandDataControl>(registry);
    if (!m_seat || !m_control->isOffered())
        return;
    m_device = m_control->createDevice(m_seat);
    zwlr_data_control_device_v1_add_listener(m_device, &listener, this);
    // What is there already is told first; whatever is copied after this is seen.
    wl_display_roundtrip(m_display);
    m_started = true;
}

WaylandSelection::~WaylandSelection()
{
    if (!m_display)
        return;
    m_incoming.clear();
    m_offer.reset();
    for (const auto& source : m_sources)
        zwlr_data_control_source_v1_destroy(source.proxy);
    if (m_device)
        zwlr_data_control_device_v1_destroy(m_device);
    m_control.reset();
    if (m_seat)
        wl_seat_destroy(m_seat);
    wl_event_queue_destroy(m_answers);
    wl_display_disconnect(m_display);
}

WaylandSelection::Offer::~Offer()
{
    zwlr_data_control_offer_v1_destroy(proxy);
}

bool WaylandSelection::works() const
{
    return m_device && !m_finished && wl_display_get_error(m_display) == 0;
}

void WaylandSelection::listenTo(zwlr_data_control_offer_v1* proxy)
{
    static constexpr zwlr_data_control_offer_v1_listener listener {
        [](void* offer, zwlr_data_control_offer_v1*, const char* type) {
            auto& types = static_cast<Offer*>(offer)->types;
            // One more says that there are too many.
            if (types.size() <= mostTargets)
                types << QString::fromUtf8(type);
        },
    };
    m_incoming.push_back(std::make_unique<Offer>(proxy));
    zwlr_data_control_offer_v1_add_listener(proxy, &listener, m_incoming.back().get());
}

std::unique_ptr<WaylandSelection::Offer> WaylandSelection::takeOffer(zwlr_data_control_offer_v1* proxy)
{
    const auto place = std::find_if(
        m_incoming.begin(), m_incoming.end(), [proxy](const auto& offer) { return offer->proxy == proxy; });
    if (place == m_incoming.end())
        return nullptr;
    auto offer = std::move(*place);
    m_incoming.erase(place);
    return offer;
}

std::optional<int> WaylandSelection::writeOf(const Offer& offer)
{
    const auto prefix = QString::fromLatin1(ownType());
    for (const auto& type : offer.types) {
        if (type.startsWith(prefix))
            return QStringView(type).sliced(prefix.size()).toInt();
    }
    return {};
}

void WaylandSelection::selectionChanged(std::unique_ptr<Offer> offer)
{
    m_readings.any([](WaylandOfferReading& reading) {
        reading.supersede();
        return false;
    });
    m_offer = std::move(offer);
    if (!m_started)
        return;
    if (const auto write = m_offer ? writeOf(*m_offer) : std::nullopt) {
        m_claimsSeen = std::max(m_claimsSeen, *write);
        return;
    }
    ++m_sequence;
    if (!m_offer) {
        m_report({ m_claimsSeen, m_sequence, false, {} });
        return;
    }
    auto* const proxy = m_offer->proxy;
    m_readings.add(std::make_unique<WaylandOfferReading>(m_offer->types, m_limits,
                       [proxy](const QByteArray& type, int file) {
                           zwlr_data_control_offer_v1_receive(proxy, type.constData(), file);
                       }),
        [this, before = m_claimsSeen, sequence = m_sequence](PasteboardSnapshot content) {
            m_report({ before, sequence, true, std::move(content) });
        });
}

void WaylandSelection::claim(const std::deque<Write>& writes)
{
    for (const auto& write : writes)
        makeSource(write);
    // Nothing else is answered until the image is there.
    wl_display_roundtrip_queue(m_display, m_answers);
}

void WaylandSelection::makeSource(const Write& write)
{
    static constexpr zwlr_data_control_source_v1_listener listener {
        [](void* data, zwlr_data_control_source_v1*, const char* type, int32_t file) {
            const auto& source = *static_cast<Source*>(data);
            source.selection->m_deliveries.add(file, source.content.value(type));
        },
        [](void* data, zwlr_data_control_source_v1*) {
            auto* const source = static_cast<Source*>(data);
            source->selection->cancel(source);
        },
    };
    m_sources.push_back({ this, m_control->createSource(), write.content });
    auto& source = m_sources.back();
    zwlr_data_control_source_v1_add_listener(source.proxy, &listener, &source);
    for (auto form = write.content.keyBegin(); form != write.content.keyEnd(); ++form)
        zwlr_data_control_source_v1_offer(source.proxy, form->constData());
    if (write.png)
        zwlr_data_control_source_v1_offer(source.proxy, "image/png");
    zwlr_data_control_source_v1_offer(source.proxy, (ownType() + QByteArray::number(++m_claims)).constData());
    zwlr_data_control_device_v1_set_selection(m_device, source.proxy);
}

void WaylandSelection::addImage(const QByteArray& png)
{
    if (!m_sources.empty())
        m_sources.back().content.insert("image/png", png);
}

void WaylandSelection::cancel(Source* source)
{
    zwlr_data_control_source_v1_destroy(source->proxy);
    // What is on its way out still arrives.
    m_sources.remove_if([source](const Source& one) { return &one == source; });
}

void WaylandSelection::readDrop(
    std::unique_ptr<WaylandOfferReading> reading, std::function<void(PasteboardSnapshot)> done)
{
    m_drops.add(std::move(reading), std::move(done));
    m_drops.reportResults();
}

void WaylandSelection::step(int wakeup)
{
    const auto now = PasteboardInstant::clock::now();
    m_deliveries.expire(now);
    m_readings.expire(now);
    m_drops.expire(now);
    exchange(wakeup);
    receive();
    m_deliveries.send();
}

void WaylandSelection::exchange(int wakeup)
{
    if (wl_display_prepare_read(m_display) != 0) {
        wl_display_dispatch_pending(m_display);
        return;
    }
    const bool isFull = wl_display_flush(m_display) < 0 && errno == EAGAIN;
    const auto events = static_cast<short>(isFull ? POLLIN | POLLOUT : POLLIN);
    std::vector<pollfd> sources { { wl_display_get_fd(m_display), events, 0 }, { wakeup, POLLIN, 0 } };
    m_deliveries.addTo(sources);
    const auto addTo = [&sources](WaylandOfferReading& reading) {
        reading.addTo(sources);
        return false;
    };
    m_readings.any(addTo);
    m_drops.any(addTo);
    const auto deadline = std::min({ m_deliveries.deadline(), m_readings.deadline(), m_drops.deadline() });
    poll(sources.data(), sources.size(), waitUntil(deadline));
    if ((sources.front().revents & ~POLLOUT) != 0)
        wl_display_read_events(m_display);
    else
        wl_display_cancel_read(m_display);
    wl_display_dispatch_pending(m_display);
}

void WaylandSelection::receive()
{
    const auto receive = [](WaylandOfferReading& reading) {
        reading.receive();
        return false;
    };
    m_readings.any(receive);
    m_drops.any(receive);
    m_readings.reportResults();
    m_drops.reportResults();
}

} // namespace nimbarrow
