#pragma once

#include "linux/pasteboard/PasteboardBed.h"
#include "linux/pasteboard/WaylandDataControl.h"

struct zwlr_data_control_device_v1;
struct zwlr_data_control_source_v1;

namespace nimbarrow {

/// Another program that copies on a compositor.
class WaylandOwner final : public ClipboardOwner {
public:
    explicit WaylandOwner(const QByteArray& display);
    ~WaylandOwner() override;
    Q_DISABLE_COPY_MOVE(WaylandOwner)

private:
    void claim() override;
    void sync() override;
    void serve() override;
    void send(const QByteArray& type, int file);

    wl_display* m_display;
    wl_seat* m_seat = nullptr;
    std::unique_ptr<WaylandDataControl> m_control;
    zwlr_data_control_device_v1* m_device = nullptr;
    /// What stands on the clipboard; null when another program's does.
    zwlr_data_control_source_v1* m_source = nullptr;
    /// What it does not go on with.
    QList<int> m_open;
};

} // namespace nimbarrow
