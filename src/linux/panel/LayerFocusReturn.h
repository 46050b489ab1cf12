#pragma once

#include <QSocketNotifier>

#include <memory>

struct wl_buffer;
struct wl_callback;
struct wl_compositor;
struct wl_display;
struct wl_surface;
struct zwlr_layer_shell_v1;
struct zwlr_layer_surface_v1;

namespace nimbarrow {

class WaylandRegistry;

/// Gives the keyboard back to the window that KWin takes it from at a click on a surface that does not want
/// it. KWin gives it back when the surface that has it goes. So one comes that nobody sees, takes it and
/// goes.
class LayerFocusReturn {
public:
    /// Null on another compositor. Main thread.
    [[nodiscard]] static std::unique_ptr<LayerFocusReturn> forKWin();
    ~LayerFocusReturn();
    Q_DISABLE_COPY_MOVE(LayerFocusReturn)

    /// Takes effect a moment later.
    void giveBack();

private:
    LayerFocusReturn(wl_display* display, const WaylandRegistry& registry);
    void show(quint32 serial);
    void end();

    /// A connection of its own: Qt knows nothing of a surface that it has not made.
    wl_display* m_display;
    wl_compositor* m_compositor;
    zwlr_layer_shell_v1* m_shell;
    wl_buffer* m_pixel = nullptr;
    wl_surface* m_surface = nullptr;
    zwlr_layer_surface_v1* m_layer = nullptr;
    wl_callback* m_shown = nullptr;
    QSocketNotifier m_notifier;
};

} // namespace nimbarrow
