#include "linux/pasteboard/WaylandDropReader.h"

#include "linux/display/WaylandRegistry.h"
#include "linux/display/WaylandResources.h"
#include "linux/pasteboard/DropReading.h"
#include "linux/pasteboard/MimeTypes.h"

#include <QMimeData>
#include <QPointer>

#include <utility>
#include <wayland-client-protocol.h>

namespace nimbarrow {

namespace {

/// What Qt can give; it waits for the other program.
PasteboardSnapshot readThroughQt(const QMimeData& drop)
{
    const PasteboardLimits limits;
    OfferReader reader(drop.formats());
    while (!reader.next().isEmpty()) {
        auto bytes = drop.data(reader.next());
        const auto room = OfferReader::room(reader.next(), limits);
        const bool cut = bytes.size() > room;
        bytes.truncate(room);
        reader.take(bytes, cut);
    }
    return reader.snapshot();
}

} // namespace

struct WaylandDropReader::Offer {
    explicit Offer(wl_data_offer* offered)
        : proxy(offered)
    {
    }
    ~Offer() { wl_data_offer_destroy(proxy); }
    Q_DISABLE_COPY_MOVE(Offer)

    wl_data_offer* proxy;
    QStringList types;
};

WaylandDropReader::WaylandDropReader(WaylandPasteboard& pasteboard)
    : m_pasteboard(pasteboard)
{
    static constexpr wl_data_device_listener listener {
        [](void* self, wl_data_device*, wl_data_offer* offer) {
            static_cast<WaylandDropReader*>(self)->listenTo(offer);
        },
        [](void* self, wl_data_device*, uint32_t, wl_surface*, wl_fixed_t, wl_fixed_t, wl_data_offer* offer) {
            static_cast<WaylandDropReader*>(self)->enter(offer);
        },
        [](void* self, wl_data_device*) { static_cast<WaylandDropReader*>(self)->m_isOver = false; },
        [](void*, wl_data_device*, uint32_t, wl_fixed_t, wl_fixed_t) {},
        [](void*, wl_data_device*) {},
        [](void* self, wl_data_device*, wl_data_offer*) {
            // The clipboard's is nothing to this one.
            static_cast<WaylandDropReader*>(self)->m_incoming.reset();
        },
    };
    auto* const display = wayland::qtDisplay();
    if (!display)
        return;
    const WaylandRegistry registry(display);
    m_seat = registry.bind<wl_seat>(wl_seat_interface, 1);
    // Of the versions before, who lets go of an offer has taken it.
    static constexpr quint32 version = WL_DATA_OFFER_FINISH_SINCE_VERSION;
    if (m_seat && registry.version(wl_data_device_manager_interface.name) >= version)
        m_manager = registry.bind<wl_data_device_manager>(wl_data_device_manager_interface, version);
    if (!m_manager)
        return;
    m_device = wl_data_device_manager_get_data_device(m_manager, m_seat);
    wl_data_device_add_listener(m_device, &listener, this);
}

WaylandDropReader::~WaylandDropReader()
{
    m_incoming.reset();
    m_drag.reset();
    m_dropped.clear();
    if (m_device)
        wl_data_device_release(m_device);
    if (m_manager)
        wl_data_device_manager_destroy(m_manager);
    if (m_seat)
        wl_seat_destroy(m_seat);
}

QStringList WaylandDropReader::types(const QMimeData& drag) const
{
    return mimetypes::pasteboardTypesOf(drag.formats());
}

void WaylandDropReader::read(const QMimeData& drop, const Done& done)
{
    if (!std::exchange(m_isOver, false)) {
        done(SnapshotContent(readThroughQt(drop)));
        return;
    }
    const auto number = ++m_drops;
    const auto& offer = *(m_dropped[number] = std::move(m_drag));
    auto reading = std::make_unique<DropReading>(
        offer.types, PasteboardLimits(), [&offer](const QByteArray& type, int file) {
            wl_data_offer_receive(offer.proxy, type.constData(), file);
        });
    wl_display_flush(wayland::qtDisplay());
    m_pasteboard.readDrop(
        std::move(reading), [reader = QPointer(this), number, done](const PasteboardSnapshot& content) {
            if (!reader)
                return;
            reader->m_dropped.erase(number);
            done(SnapshotContent(content));
        });
}

void WaylandDropReader::listenTo(wl_data_offer* proxy)
{
    static constexpr wl_data_offer_listener listener {
        [](void* offer, wl_data_offer*, const char* type) {
            auto& types = static_cast<Offer*>(offer)->types;
            // One more says that there are too many.
            if (types.size() <= mostTargets)
                types << QString::fromUtf8(type);
        },
        [](void*, wl_data_offer*, uint32_t) {},
        [](void*, wl_data_offer*, uint32_t) {},
    };
    m_incoming = std::make_unique<Offer>(proxy);
    wl_data_offer_add_listener(proxy, &listener, m_incoming.get());
}

void WaylandDropReader::enter(wl_data_offer* proxy)
{
    m_isOver = proxy && m_incoming && m_incoming->proxy == proxy;
    m_drag = std::move(m_incoming);
}

} // namespace nimbarrow
