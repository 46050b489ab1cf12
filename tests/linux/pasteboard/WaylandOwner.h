#pragma once

#include "linux/pasteboard/PasteboardBed.h"
#include "linux/pasteboard/WaylandDataControl.h"

#include <atomic>
#include <thread>

struct zwlr_data_control_device_v1;
struct zwlr_data_control_source_v1;

namespace nimbarrow {

/// Another program that copies on a compositor, on a connection and a thread of its own.
class WaylandOwner final : public ClipboardOwner {
public:
    explicit WaylandOwner(const QByteArray& display);
    ~WaylandOwner() override;
    Q_DISABLE_COPY_MOVE(WaylandOwner)

    void copy(Offer offer, Manner manner = Manner::Polite, int pieces = 0) override;
    void copyEach(const QList<QByteArray>& texts) override;

    [[nodiscard]] int dataRequests() const override { return m_dataRequests; }
    [[nodiscard]] int piecesSent() const override { return m_piecesSent; }

private:
    void claim();
    void serve();
    void send(const QByteArray& type, int file);

    wl_display* m_display;
    wl_seat* m_seat = nullptr;
    std::unique_ptr<WaylandDataControl> m_control;
    zwlr_data_control_device_v1* m_device = nullptr;
    /// What stands on the clipboard; null when another program's does.
    zwlr_data_control_source_v1* m_source = nullptr;
    Offer m_offer;
    QList<QByteArray> m_texts;
    Manner m_manner = Manner::Polite;
    int m_pieces = 0;
    /// What it does not go on with.
    QList<int> m_open;
    std::atomic_int m_dataRequests = 0;
    std::atomic_int m_piecesSent = 0;
    std::atomic_bool m_stop = false;
    std::thread m_thread;
};

} // namespace nimbarrow
