#include "linux/panel/LayerKeyboard.h"

#include "linux/display/WaylandResources.h"

#include <unistd.h>
#include <utility>
#include <wayland-client.h>

namespace nimbarrow {

LayerKeyboard::LayerKeyboard(std::function<void()> lost)
    : m_lost(std::move(lost))
    , m_answer(wl_display_sync(wayland::qtDisplay()))
{
    static constexpr wl_callback_listener listener {
        [](void* self, wl_callback*, uint32_t) { static_cast<LayerKeyboard*>(self)->listen(); },
    };
    wl_callback_add_listener(m_answer, &listener, this);
}

LayerKeyboard::~LayerKeyboard()
{
    wl_callback_destroy(m_answer);
    if (!m_keyboard)
        return;
    if (wl_keyboard_get_version(m_keyboard) >= WL_KEYBOARD_RELEASE_SINCE_VERSION)
        wl_keyboard_release(m_keyboard);
    else
        wl_keyboard_destroy(m_keyboard);
}

void LayerKeyboard::listen()
{
    static constexpr wl_keyboard_listener listener {
        [](void*, wl_keyboard*, uint32_t, int32_t file, uint32_t) { ::close(file); },
        [](void*, wl_keyboard*, uint32_t, wl_surface*, wl_array*) {},
        [](void* self, wl_keyboard*, uint32_t, wl_surface*) { static_cast<LayerKeyboard*>(self)->m_lost(); },
        [](void*, wl_keyboard*, uint32_t, uint32_t, uint32_t, uint32_t) {},
        [](void*, wl_keyboard*, uint32_t, uint32_t, uint32_t, uint32_t, uint32_t) {},
        [](void*, wl_keyboard*, int32_t, int32_t) {},
    };
    auto* const seat = wayland::seatWithKeyboard();
    if (!seat)
        return;
    m_keyboard = wl_seat_get_keyboard(seat);
    wl_keyboard_add_listener(m_keyboard, &listener, this);
}

} // namespace nimbarrow
