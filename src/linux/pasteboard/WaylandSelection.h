#pragma once

#include "linux/pasteboard/DropReading.h"
#include "linux/pasteboard/PasteboardReadings.h"
#include "linux/pasteboard/PipeDeliveries.h"
#include "linux/pasteboard/Selection.h"
#include "linux/pasteboard/WaylandDataControl.h"
#include "linux/pasteboard/WaylandOfferReading.h"

#include <optional>

struct zwlr_data_control_offer_v1;

namespace nimbarrow {

/// The compositor's clipboard, on a connection of its own. Never the primary selection.
class WaylandSelection final : public Selection {
public:
    /// An empty display name means the one of the environment. `report` is called on the thread that uses it.
    WaylandSelection(const QByteArray& display, const PasteboardLimits& limits, Report report);
    ~WaylandSelection() override;
    Q_DISABLE_COPY_MOVE(WaylandSelection)

    [[nodiscard]] bool works() const override;
    void claim(const std::deque<Write>& writes) override;
    void addImage(const QByteArray& png) override;
    /// There is nobody to ask: a clipboard manager reads what is written when it is written.
    void save() override { }
    [[nodiscard]] bool isGiving() const override { return !m_deliveries.isEmpty(); }
    void step(int wakeup) override;

    /// Goes on reading what has been dropped.
    void readDrop(std::unique_ptr<DropReading> reading, std::function<void(PasteboardSnapshot)> done);

private:
    /// What somebody has copied, while its list of types is coming, and until something else is copied.
    struct Offer {
        explicit Offer(zwlr_data_control_offer_v1* offered)
            : proxy(offered)
        {
        }
        ~Offer();
        Q_DISABLE_COPY_MOVE(Offer)

        zwlr_data_control_offer_v1* proxy;
        QStringList types;
    };

    /// What one write offers, until the clipboard is another's.
    struct Source {
        WaylandSelection* selection = nullptr;
        zwlr_data_control_source_v1* proxy = nullptr;
        QHash<QByteArray, QByteArray> content;
    };

    void connect(const QByteArray& display);
    void makeSource(const Write& write);
    void listenTo(zwlr_data_control_offer_v1* proxy);
    [[nodiscard]] std::unique_ptr<Offer> takeOffer(zwlr_data_control_offer_v1* proxy);
    void selectionChanged(std::unique_ptr<Offer> offer);
    /// The number of the write that it is the offer of; none where another program has made it.
    [[nodiscard]] static std::optional<int> writeOf(const Offer& offer);
    void cancel(Source* source);
    void exchange(int wakeup);
    void receive();

    PasteboardLimits m_limits;
    Report m_report;
    wl_display* m_display = nullptr;
    /// For answers that are waited for: events on the connection's own queue wait for their turn meanwhile.
    wl_event_queue* m_answers = nullptr;
    wl_seat* m_seat = nullptr;
    std::unique_ptr<WaylandDataControl> m_control;
    zwlr_data_control_device_v1* m_device = nullptr;
    bool m_started = false;
    bool m_finished = false;

    std::list<std::unique_ptr<Offer>> m_incoming;
    /// Of the clipboard as it is.
    std::unique_ptr<Offer> m_offer;
    std::list<Source> m_sources;
    PipeDeliveries m_deliveries;
    PasteboardReadings<WaylandOfferReading> m_readings { m_limits.order };
    PasteboardReadings<DropReading> m_drops { m_limits.order };
    int m_claims = 0;
    int m_claimsSeen = 0;
    quint64 m_sequence = 0;
};

} // namespace nimbarrow
