#pragma once

class QScreen;
class QWindow;
struct wl_display;
struct wl_output;
struct wl_seat;
struct wl_surface;

/// What Qt's Wayland platform has made. Null where the program runs on another one.
namespace nimbarrow::wayland {

/// The connection that Qt runs its windows on, and reads.
[[nodiscard]] wl_display* qtDisplay();

/// The one that Qt's keys come from, null for as long as it has no keyboard.
[[nodiscard]] wl_seat* seatWithKeyboard();

/// None for a window that has not been created.
[[nodiscard]] wl_surface* surface(QWindow& window);

/// None for a screen that stands in where there is no output.
[[nodiscard]] wl_output* output(QScreen& screen);

} // namespace nimbarrow::wayland
