#include "linux/panel/LayerFocusReturn.h"

#include "layer-shell-client.h"
#include "linux/display/WaylandRegistry.h"

#include <sys/mman.h>
#include <unistd.h>
#include <utility>
#include <wayland-client.h>

namespace nimbarrow {

namespace {

/// One that is transparent. Null where there is no memory for it.
wl_buffer* transparentPixel(wl_shm* shm)
{
    constexpr auto size = 4;
    const int file = ::memfd_create("nimbarrow-pixel", MFD_CLOEXEC);
    if (file < 0)
        return nullptr;
    wl_buffer* result = nullptr;
    if (::ftruncate(file, size) == 0) {
        auto* const pool = wl_shm_create_pool(shm, file, size);
        result = wl_shm_pool_create_buffer(pool, 0, 1, 1, size, WL_SHM_FORMAT_ARGB8888);
        wl_shm_pool_destroy(pool);
    }
    ::close(file);
    return result;
}

} // namespace

std::unique_ptr<LayerFocusReturn> LayerFocusReturn::forKWin()
{
    auto* const display = wl_display_connect(nullptr);
    if (!display)
        return nullptr;
    // The registry goes before its connection.
    {
        const WaylandRegistry registry(display);
        if (registry.version("org_kde_plasma_shell") != 0)
            return std::unique_ptr<LayerFocusReturn>(new LayerFocusReturn(display, registry));
    }
    wl_display_disconnect(display);
    return nullptr;
}

LayerFocusReturn::LayerFocusReturn(wl_display* display, const WaylandRegistry& registry)
    : m_display(display)
    , m_compositor(registry.bind<wl_compositor>(wl_compositor_interface, 1))
    , m_shell(registry.bind<zwlr_layer_shell_v1>(zwlr_layer_shell_v1_interface, 1))
    , m_notifier(wl_display_get_fd(display), QSocketNotifier::Read)
{
    if (auto* const shm = registry.bind<wl_shm>(wl_shm_interface, 1)) {
        m_pixel = transparentPixel(shm);
        wl_shm_destroy(shm);
    }
    QObject::connect(&m_notifier, &QSocketNotifier::activated, &m_notifier, [this] {
        // There is something to be read, so it does not wait.
        if (wl_display_dispatch(m_display) < 0)
            m_notifier.setEnabled(false);
    });
}

LayerFocusReturn::~LayerFocusReturn()
{
    end();
    if (m_pixel)
        wl_buffer_destroy(m_pixel);
    if (m_shell)
        wl_proxy_destroy(reinterpret_cast<wl_proxy*>(m_shell));
    if (m_compositor)
        wl_compositor_destroy(m_compositor);
    m_notifier.setEnabled(false);
    wl_display_disconnect(m_display);
}

void LayerFocusReturn::giveBack()
{
    static constexpr zwlr_layer_surface_v1_listener listener {
        [](void* self, zwlr_layer_surface_v1*, uint32_t serial, uint32_t, uint32_t) {
            static_cast<LayerFocusReturn*>(self)->show(serial);
        },
        [](void* self, zwlr_layer_surface_v1*) { static_cast<LayerFocusReturn*>(self)->end(); },
    };
    if (m_surface || !m_pixel || !m_shell || !m_compositor)
        return;
    m_surface = wl_compositor_create_surface(m_compositor);
    auto* const nothing = wl_compositor_create_region(m_compositor);
    wl_surface_set_input_region(m_surface, nothing);
    wl_region_destroy(nothing);
    m_layer = zwlr_layer_shell_v1_get_layer_surface(
        m_shell, m_surface, nullptr, ZWLR_LAYER_SHELL_V1_LAYER_OVERLAY, "nimbarrow-focus");
    zwlr_layer_surface_v1_add_listener(m_layer, &listener, this);
    zwlr_layer_surface_v1_set_size(m_layer, 1, 1);
    zwlr_layer_surface_v1_set_exclusive_zone(m_layer, -1);
    zwlr_layer_surface_v1_set_keyboard_interactivity(
        m_layer, ZWLR_LAYER_SURFACE_V1_KEYBOARD_INTERACTIVITY_EXCLUSIVE);
    wl_surface_commit(m_surface);
    wl_display_flush(m_display);
}

void LayerFocusReturn::show(quint32 serial)
{
    static constexpr wl_callback_listener listener {
        [](void* self, wl_callback*, uint32_t) { static_cast<LayerFocusReturn*>(self)->end(); },
    };
    zwlr_layer_surface_v1_ack_configure(m_layer, serial);
    if (m_shown)
        return;
    wl_surface_attach(m_surface, m_pixel, 0, 0);
    wl_surface_commit(m_surface);
    // Once this is answered the compositor has seen it.
    m_shown = wl_display_sync(m_display);
    wl_callback_add_listener(m_shown, &listener, this);
    wl_display_flush(m_display);
}

void LayerFocusReturn::end()
{
    if (!m_surface)
        return;
    if (m_shown)
        wl_callback_destroy(std::exchange(m_shown, nullptr));
    zwlr_layer_surface_v1_destroy(std::exchange(m_layer, nullptr));
    wl_surface_destroy(std::exchange(m_surface, nullptr));
    wl_display_flush(m_display);
}

} // namespace nimbarrow
