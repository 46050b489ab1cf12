#include "linux/display/WaylandRegistry.h"

#include <algorithm>
#include <wayland-client-protocol.h>

namespace nimbarrow {

WaylandRegistry::WaylandRegistry(wl_display* display, wl_event_queue* queue)
{
    static constexpr wl_registry_listener listener {
        [](void* self, wl_registry*, uint32_t name, const char* interface, uint32_t version) {
            auto& globals = static_cast<WaylandRegistry*>(self)->m_globals;
            if (!globals.contains(interface))
                globals.insert(interface, { name, version });
        },
        [](void*, wl_registry*, uint32_t) {},
    };
    // A queue of its own: the events of others on this connection are not to run in the middle of this.
    auto* const own = wl_display_create_queue(display);
    auto* const wrapper = static_cast<wl_display*>(wl_proxy_create_wrapper(display));
    wl_proxy_set_queue(reinterpret_cast<wl_proxy*>(wrapper), own);
    m_registry = wl_display_get_registry(wrapper);
    wl_proxy_wrapper_destroy(wrapper);
    wl_registry_add_listener(m_registry, &listener, this);
    wl_display_roundtrip_queue(display, own);
    // What is bound from now on inherits this queue.
    wl_proxy_set_queue(reinterpret_cast<wl_proxy*>(m_registry), queue);
    wl_event_queue_destroy(own);
}

WaylandRegistry::~WaylandRegistry()
{
    wl_registry_destroy(m_registry);
}

quint32 WaylandRegistry::version(const char* interface) const
{
    return m_globals.value(interface).version;
}

void* WaylandRegistry::bound(const wl_interface& interface, quint32 newestVersion) const
{
    const auto global = m_globals.value(interface.name);
    if (!global.version)
        return nullptr;
    return wl_registry_bind(m_registry, global.name, &interface, std::min(global.version, newestVersion));
}

} // namespace nimbarrow
