#include "linux/panel/LayerKeyboard.h"

#include "linux/display/WaylandResources.h"

#include <unistd.h>
#include <utility>
#include <wayland-client.h>

namespace nimbarrow {

LayerKeyboard::LayerKeyboard(
    wl_surface* surface, std::function<void(Claim)> claim, std::function<void()> lost)
    : m_surface(surface)
    , m_claim(std::move(claim))
    , m_lost(std::move(lost))
{
    static constexpr wl_keyboard_listener listener {
        [](void*, wl_keyboard*, uint32_t, int32_t file, uint32_t) { ::close(file); },
        [](void* data, wl_keyboard*, uint32_t, wl_surface* entered, wl_array*) {
            auto& self = *static_cast<LayerKeyboard*>(data);
            self.m_isHere = entered == self.m_surface;
        },
        [](void* data, wl_keyboard*, uint32_t, wl_surface*) {
            auto& self = *static_cast<LayerKeyboard*>(data);
            self.m_isHere = false;
            if (self.m_isGiven)
                self.m_lost();
        },
        [](void*, wl_keyboard*, uint32_t, uint32_t, uint32_t, uint32_t) {},
        [](void*, wl_keyboard*, uint32_t, uint32_t, uint32_t, uint32_t, uint32_t) {},
        [](void*, wl_keyboard*, int32_t, int32_t) {},
    };
    if (auto* const seat = wayland::seatWithKeyboard()) {
        m_keyboard = wl_seat_get_keyboard(seat);
        wl_keyboard_add_listener(m_keyboard, &listener, this);
    }
    awaitAnswer();
}

LayerKeyboard::~LayerKeyboard()
{
    if (m_answer)
        wl_callback_destroy(m_answer);
    if (!m_keyboard)
        return;
    if (wl_keyboard_get_version(m_keyboard) >= WL_KEYBOARD_RELEASE_SINCE_VERSION)
        wl_keyboard_release(m_keyboard);
    else
        wl_keyboard_destroy(m_keyboard);
}

void LayerKeyboard::setSurface(wl_surface* surface)
{
    m_surface = surface;
    m_isHere = false;
}

void LayerKeyboard::awaitAnswer()
{
    if (m_answer)
        return;
    static constexpr wl_callback_listener listener {
        [](void* self, wl_callback*, uint32_t) { static_cast<LayerKeyboard*>(self)->goOn(); },
    };
    m_answer = wl_display_sync(wayland::qtDisplay());
    wl_callback_add_listener(m_answer, &listener, this);
    wl_display_flush(wayland::qtDisplay());
}

void LayerKeyboard::goOn()
{
    wl_callback_destroy(std::exchange(m_answer, nullptr));
    if (m_claimed == Claim::Exclusive || (m_claimed && m_isHere)) {
        m_isGiven = true;
        return;
    }
    // One that is here without a claim has stayed, since nobody else wanted it, and tells nothing of demand.
    if (m_isHere || m_claimed == Claim::OnDemandAnew)
        m_claimed = Claim::Exclusive;
    else
        m_claimed = m_claimed ? Claim::OnDemandAnew : Claim::OnDemand;
    m_claim(*m_claimed);
    if (m_claimed != Claim::OnDemandAnew)
        awaitAnswer();
}

} // namespace nimbarrow
