// Hand WIDTH HEIGHT: the hands of a person on a Wayland compositor of that size in points. Reads lines: "move
// X Y", "press", "release", and "key CODE 1" or "key CODE 0" with a code of the kernel's; answers each with
// "done" once the compositor has seen it.
#include "fake-input-client.h"
#include "linux/display/WaylandRegistry.h"
#include "virtual-pointer-client.h"

#include <chrono>
#include <cstdint>
#include <cstdlib>
#include <iostream>
#include <string>

namespace {

constexpr uint32_t leftButton = 0x110;

uint32_t now()
{
    const auto time = std::chrono::steady_clock::now().time_since_epoch();
    return static_cast<uint32_t>(std::chrono::duration_cast<std::chrono::milliseconds>(time).count());
}

} // namespace

int main(int argc, char* argv[])
{
    auto* const display = wl_display_connect(nullptr);
    if (!display || argc < 3)
        return 1;
    const auto width = static_cast<uint32_t>(std::atoi(argv[1]));
    const auto height = static_cast<uint32_t>(std::atoi(argv[2]));
    const nimbarrow::WaylandRegistry registry(display);
    auto* const seat = registry.bind<wl_seat>(wl_seat_interface, 1);
    auto* const pointers
        = registry.bind<zwlr_virtual_pointer_manager_v1>(zwlr_virtual_pointer_manager_v1_interface, 1);
    auto* const pointer
        = pointers ? zwlr_virtual_pointer_manager_v1_create_virtual_pointer(pointers, seat) : nullptr;
    auto* const fake = registry.bind<org_kde_kwin_fake_input>(org_kde_kwin_fake_input_interface, 4);
    if (fake)
        org_kde_kwin_fake_input_authenticate(fake, "Hand", "a test");
    if (!pointer && !fake)
        return 2;
    wl_display_roundtrip(display);
    std::cout << "ready" << std::endl;
    std::string verb;
    while (std::cin >> verb) {
        if (verb == "move") {
            double x = 0;
            double y = 0;
            std::cin >> x >> y;
            if (pointer)
                zwlr_virtual_pointer_v1_motion_absolute(
                    pointer, now(), static_cast<uint32_t>(x), static_cast<uint32_t>(y), width, height);
            else
                org_kde_kwin_fake_input_pointer_motion_absolute(
                    fake, wl_fixed_from_double(x), wl_fixed_from_double(y));
        } else if (verb == "press" || verb == "release") {
            const uint32_t state = verb == "press" ? 1 : 0;
            if (pointer)
                zwlr_virtual_pointer_v1_button(pointer, now(), leftButton, state);
            else
                org_kde_kwin_fake_input_button(fake, leftButton, state);
        } else if (verb == "key") {
            uint32_t code = 0;
            uint32_t state = 0;
            std::cin >> code >> state;
            if (fake)
                org_kde_kwin_fake_input_keyboard_key(fake, code, state);
        }
        if (pointer)
            zwlr_virtual_pointer_v1_frame(pointer);
        if (wl_display_roundtrip(display) < 0)
            return 3;
        std::cout << "done" << std::endl;
    }
    wl_display_disconnect(display);
    return 0;
}
