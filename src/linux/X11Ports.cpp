#include "linux/DisplayPorts.h"
#include "linux/applications/DesktopEntries.h"
#include "linux/applications/X11Applications.h"
#include "linux/display/DisplayPanels.h"
#include "linux/display/QtScreens.h"
#include "linux/display/WaylandOutputs.h"
#include "linux/display/X11Pointer.h"
#include "linux/display/X11Properties.h"
#include "linux/keys/InputWays.h"
#include "linux/keys/X11HotKeys.h"
#include "linux/keys/X11Keystrokes.h"
#include "linux/panel/X11PanelWindow.h"
#include "linux/pasteboard/X11DropReader.h"
#include "linux/pasteboard/X11Pasteboard.h"
#include "linux/power/LinuxPowerAssertions.h"
#include "linux/power/X11ScreenSaver.h"
#include "linux/session/LinuxSessionLock.h"
#include "linux/session/SessionBus.h"

#include <xcb/xfixes.h>

using namespace Qt::StringLiterals;

namespace nimbarrow {

namespace {

void addCapabilities(Capabilities& capabilities, bool isNested)
{
    using Part = Capabilities::Part;
    capabilities.set(Part::Clipboard, [] {
        return unless(x11::majorOpcode(x11::qtConnection(), &xcb_xfixes_id) != 0,
            u"The X server lacks the XFixes extension: start it with that."_s);
    });
    capabilities.set(Part::FrontApplication, [isNested] {
        if (isNested)
            return frontUnknown();
        auto* const connection = x11::qtConnection();
        const auto atom = x11::atom(connection, "_NET_ACTIVE_WINDOW");
        const auto supported
            = x11::property(connection, x11::rootWindow(connection), x11::atom(connection, "_NET_SUPPORTED"));
        const QByteArray wanted(reinterpret_cast<const char*>(&atom), sizeof atom);
        return unless(supported.contains(wanted),
            u"The window manager does not tell which program is in front: take one that does."_s);
    });
    capabilities.set(Part::KeepAwake, [] {
        return unless(liveSessionBus() || x11::suspendScreenSaver(),
            u"Nobody here can be asked: change the time of the screen saver."_s);
    });
}

std::unique_ptr<X11HotKeys> makeHotKeys(Capabilities& capabilities)
{
    auto keys = std::make_unique<X11HotKeys>();
    capabilities.set(Capabilities::Part::HotKey, [&hotKeys = *keys] {
        return unless(!hotKeys.isTaken(Key::V, KeyModifier::Command | KeyModifier::Shift),
            u"Another program holds Super+Shift+V: give a key of the desktop 'nimbarrow --toggle'."_s,
            u"Super+Shift+V зайнято: признач клавіші системи nimbarrow --toggle."_s);
    });
    return keys;
}

} // namespace

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
        setKeystrokes(platform, std::make_unique<X11Keystrokes>(*applications));
    } else {
        addPortalKeystrokes(platform, *applications);
    }
    platform.applications = std::move(applications);
    if (isNested)
        addBusHotKeys(platform, false);
    else
        platform.hotKeys = makeHotKeys(platform.capabilities);
    // A compositor does not ask the X server in it.
    const auto suspend
        = isNested ? LinuxPowerAssertions::Substitute() : [] { return x11::suspendScreenSaver(); };
    addCapabilities(platform.capabilities, isNested);
    platform.powerAssertions = std::make_unique<LinuxPowerAssertions>(
        liveSessionBus(), liveSystemBus(), suspend, *platform.scheduler);
    platform.adoptPanel = [&lock, isNested](QQuickWindow& window) {
        auto panel = std::make_unique<X11PanelWindow>(window, isNested);
        lock.follow(panel->cover());
        return panel;
    };
}

} // namespace nimbarrow
