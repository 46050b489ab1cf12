#include "linux/display/WaylandResources.h"

#include <QGuiApplication>
#include <QWindow>
#include <qpa/qplatformnativeinterface.h>

namespace nimbarrow::wayland {

wl_display* qtDisplay()
{
    auto* const native = QGuiApplication::platformNativeInterface();
    return native ? static_cast<wl_display*>(native->nativeResourceForIntegration("wl_display")) : nullptr;
}

wl_seat* seatWithKeyboard()
{
    auto* const native = QGuiApplication::platformNativeInterface();
    return native && native->nativeResourceForIntegration("wl_keyboard")
        ? static_cast<wl_seat*>(native->nativeResourceForIntegration("wl_seat"))
        : nullptr;
}

wl_surface* surface(QWindow& window)
{
    auto* const native = QGuiApplication::platformNativeInterface();
    return window.handle() && native
        ? static_cast<wl_surface*>(native->nativeResourceForWindow("surface", &window))
        : nullptr;
}

wl_output* output(QScreen& screen)
{
    auto* const native = QGuiApplication::platformNativeInterface();
    return native ? static_cast<wl_output*>(native->nativeResourceForScreen("output", &screen)) : nullptr;
}

} // namespace nimbarrow::wayland
