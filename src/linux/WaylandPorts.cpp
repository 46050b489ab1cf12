#include "linux/DisplayPorts.h"
#include "linux/applications/NoApplications.h"
#include "linux/display/DisplayPanels.h"
#include "linux/display/QtScreens.h"
#include "linux/display/WaylandOutputs.h"
#include "linux/display/WaylandPointer.h"
#include "linux/keys/NoHotKeys.h"
#include "linux/keys/NoKeystrokes.h"
#include "linux/panel/LayerShellPanelWindow.h"
#include "linux/pasteboard/WaylandDropReader.h"
#include "linux/pasteboard/WaylandPasteboard.h"
#include "linux/power/LinuxPowerAssertions.h"
#include "linux/power/WaylandIdleInhibition.h"
#include "linux/session/SessionBus.h"

#include <QPointer>
#include <QQuickWindow>

namespace nimbarrow {

void addWaylandPorts(Platform& platform)
{
    platform.screens = std::make_unique<QtScreens>(std::make_unique<DisplayPanels>(), waylandScreenMode());
    auto pointer = std::make_unique<WaylandPointer>();
    auto& panelsPointer = *pointer;
    platform.pointer = std::move(pointer);
    auto pasteboard = std::make_unique<WaylandPasteboard>();
    platform.dropReader = std::make_unique<WaylandDropReader>(*pasteboard);
    platform.pasteboard = std::move(pasteboard);
    platform.applications = std::make_unique<NoApplications>();
    platform.keystrokes = std::make_unique<NoKeystrokes>();
    platform.hotKeys = std::make_unique<NoHotKeys>();
    platform.accessibilityTrust = std::make_unique<NoTrust>();
    // The compositor heeds it for as long as the panel is to be seen.
    const auto panelsWindow = std::make_shared<QPointer<QQuickWindow>>();
    const auto inhibitIdle = [panelsWindow]() -> std::unique_ptr<Port> {
        return *panelsWindow ? wayland::inhibitIdle(**panelsWindow) : nullptr;
    };
    platform.powerAssertions = std::make_unique<LinuxPowerAssertions>(
        liveSessionBus(), liveSystemBus(), inhibitIdle, *platform.scheduler);
    platform.adoptPanel = [&panelsPointer, panelsWindow](QQuickWindow& window) {
        *panelsWindow = &window;
        return std::make_unique<LayerShellPanelWindow>(window, panelsPointer);
    };
}

} // namespace nimbarrow
