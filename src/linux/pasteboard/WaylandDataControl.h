#pragma once

#include "linux/display/WaylandRegistry.h"

struct wl_seat;
struct zwlr_data_control_device_v1;
struct zwlr_data_control_manager_v1;
struct zwlr_data_control_source_v1;

namespace nimbarrow {

/// The compositor's leave to see and to own the clipboard whoever has the keyboard, as either of two
/// interfaces gives it. They agree in every message, so what one of them has made is spoken to in the terms
/// of the other.
class WaylandDataControl {
public:
    explicit WaylandDataControl(const WaylandRegistry& registry);
    ~WaylandDataControl();
    Q_DISABLE_COPY_MOVE(WaylandDataControl)

    [[nodiscard]] bool isOffered() const { return m_manager; }

    /// The caller's.
    [[nodiscard]] zwlr_data_control_source_v1* createSource() const;
    [[nodiscard]] zwlr_data_control_device_v1* createDevice(wl_seat* seat) const;

private:
    struct Names;

    const Names* m_names = nullptr;
    zwlr_data_control_manager_v1* m_manager = nullptr;
};

} // namespace nimbarrow
