#include "linux/DisplayPorts.h"
#include "linux/applications/DesktopEntries.h"
#include "linux/applications/X11Applications.h"
#include "linux/display/DisplayPanels.h"
#include "linux/display/QtScreens.h"
#include "linux/display/WaylandOutputs.h"
#include "linux/display/X11Pointer.h"
#include "linux/keys/InputWays.h"
#include "linux/keys/X11HotKeys.h"
#include "linux/keys/X11Keystrokes.h"
#include "linux/keys/X11Trust.h"
#include "linux/panel/X11PanelWindow.h"
#include "linux/pasteboard/X11DropReader.h"
#include "linux/pasteboard/X11Pasteboard.h"
#include "linux/power/LinuxPowerAssertions.h"
#include "linux/power/X11ScreenSaver.h"
#include "linux/session/LinuxSessionLock.h"
#include "linux/session/SessionBus.h"

namespace nimbarrow {

void addX11Ports(Platform& platform, DisplaySystem system, LinuxSessionLock& lock)
{
    const auto isNested = system == DisplaySystem::XWayland;
    platform.screens = std::make_unique<QtScreens>(
        std::make_unique<DisplayPanels>(), isNested ? waylandScreenMode() : ScreenModeOf());
    platform.pointer = std::make_unique<X11Pointer>(isNested);
    auto pasteboard = std::make_unique<X11Pasteboard>();
    platform.dropReader = std::make_unique<X11DropReader>(*pasteboard);
    platform.pasteboard = std::move(pasteboard);
    const InputFacts facts { system };
    std::unique_ptr<DesktopApplications> applications;
    if (frontWay(facts) == FrontWay::X11)
        applications = std::make_unique<X11Applications>();
    else
        applications = std::make_unique<DesktopApplications>(std::make_unique<DesktopEntries>());
    if (pasteWay(facts) == PasteWay::TestExtension) {
        platform.keystrokes = std::make_unique<X11Keystrokes>(*applications);
        platform.accessibilityTrust = std::make_unique<X11Trust>();
    } else {
        addPortalKeystrokes(platform, *applications);
    }
    platform.applications = std::move(applications);
    if (system == DisplaySystem::X11)
        platform.hotKeys = std::make_unique<X11HotKeys>();
    else
        addBusHotKeys(platform, false);
    // A compositor does not ask the X server in it.
    const auto suspend
        = isNested ? LinuxPowerAssertions::Substitute() : [] { return x11::suspendScreenSaver(); };
    platform.powerAssertions = std::make_unique<LinuxPowerAssertions>(
        liveSessionBus(), liveSystemBus(), suspend, *platform.scheduler);
    platform.adoptPanel = [&lock](QQuickWindow& window) {
        auto panel = std::make_unique<X11PanelWindow>(window);
        lock.follow(panel->cover());
        return panel;
    };
}

} // namespace nimbarrow
