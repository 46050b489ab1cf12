#include "linux/pasteboard/WaylandDataControl.h"

#include <array>
#include <data-control-client.h>
#include <ext-data-control-client.h>

namespace nimbarrow {

static_assert(EXT_DATA_CONTROL_OFFER_V1_RECEIVE == ZWLR_DATA_CONTROL_OFFER_V1_RECEIVE
    && EXT_DATA_CONTROL_SOURCE_V1_OFFER == ZWLR_DATA_CONTROL_SOURCE_V1_OFFER
    && EXT_DATA_CONTROL_DEVICE_V1_SET_SELECTION == ZWLR_DATA_CONTROL_DEVICE_V1_SET_SELECTION);

struct WaylandDataControl::Names {
    const wl_interface& manager;
    const wl_interface& device;
    const wl_interface& source;
};

WaylandDataControl::WaylandDataControl(const WaylandRegistry& registry)
{
    static const std::array known {
        Names { ext_data_control_manager_v1_interface, ext_data_control_device_v1_interface,
            ext_data_control_source_v1_interface },
        Names { zwlr_data_control_manager_v1_interface, zwlr_data_control_device_v1_interface,
            zwlr_data_control_source_v1_interface },
    };
    for (const auto& names : known) {
        // The first version of the older one knows nothing of the primary selection, which is nobody's
        // business.
        m_manager = registry.bind<zwlr_data_control_manager_v1>(names.manager, 1);
        m_names = &names;
        if (m_manager)
            return;
    }
}

WaylandDataControl::~WaylandDataControl()
{
    if (m_manager)
        zwlr_data_control_manager_v1_destroy(m_manager);
}

zwlr_data_control_source_v1* WaylandDataControl::createSource() const
{
    auto* const manager = reinterpret_cast<wl_proxy*>(m_manager);
    return reinterpret_cast<zwlr_data_control_source_v1*>(
        wl_proxy_marshal_flags(manager, ZWLR_DATA_CONTROL_MANAGER_V1_CREATE_DATA_SOURCE, &m_names->source,
            wl_proxy_get_version(manager), 0, nullptr));
}

zwlr_data_control_device_v1* WaylandDataControl::createDevice(wl_seat* seat) const
{
    auto* const manager = reinterpret_cast<wl_proxy*>(m_manager);
    return reinterpret_cast<zwlr_data_control_device_v1*>(
        wl_proxy_marshal_flags(manager, ZWLR_DATA_CONTROL_MANAGER_V1_GET_DATA_DEVICE, &m_names->device,
            wl_proxy_get_version(manager), 0, nullptr, seat));
}

} // namespace nimbarrow
