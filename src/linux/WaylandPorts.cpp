#include "linux/DisplayPorts.h"
#include "linux/applications/DesktopEntries.h"
#include "linux/applications/ForeignToplevels.h"
#include "linux/applications/KWinWindows.h"
#include "linux/display/DisplayPanels.h"
#include "linux/display/QtScreens.h"
#include "linux/display/WaylandOutputs.h"
#include "linux/display/WaylandPointer.h"
#include "linux/display/WaylandRegistry.h"
#include "linux/display/WaylandResources.h"
#include "linux/keys/FakeInputKeystrokes.h"
#include "linux/keys/InputWays.h"
#include "linux/keys/VirtualKeyboardKeystrokes.h"
#include "linux/panel/LayerShellPanelWindow.h"
#include "linux/pasteboard/WaylandDropReader.h"
#include "linux/pasteboard/WaylandPasteboard.h"
#include "linux/power/LinuxPowerAssertions.h"
#include "linux/power/WaylandIdleInhibition.h"
#include "linux/session/SessionBus.h"

#include <QPointer>
#include <QQuickWindow>

using namespace Qt::StringLiterals;

namespace nimbarrow {

namespace {

InputFacts inputFacts(wl_display* display)
{
    const WaylandRegistry registry(display);
    InputFacts facts { DisplaySystem::Wayland };
    facts.listsToplevels = registry.version("zwlr_foreign_toplevel_manager_v1") > 0;
    facts.isKWin = registry.version("org_kde_plasma_shell") > 0;
    facts.lendsKeyboards = registry.version("zwp_virtual_keyboard_manager_v1") > 0;
    facts.takesFakeInput = registry.version("org_kde_kwin_fake_input") > 0;
    return facts;
}

std::unique_ptr<DesktopApplications> makeApplications(
    FrontWay way, wl_display* display, Capabilities& capabilities)
{
    const auto bus = liveSessionBus();
    if (way == FrontWay::ForeignToplevels)
        return std::make_unique<ForeignToplevels>(display);
    if (way == FrontWay::KWin && bus) {
        auto windows = std::make_unique<KWinWindows>(*bus);
        capabilities.set(Capabilities::Part::FrontApplication, [&windows = *windows] {
            const auto tells = windows.tellsFront();
            return tells
                ? unless(*tells, frontUnknown().words)
                : Capability { Capability::State::NoAnswerYet,
                      u"Until KWin says which program is in front, entries bear no program's name."_s, {} };
        });
        return windows;
    }
    capabilities.set(Capabilities::Part::FrontApplication, frontUnknown);
    return std::make_unique<DesktopApplications>(std::make_unique<DesktopEntries>());
}

void addInputPorts(Platform& platform)
{
    auto* const display = wayland::qtDisplay();
    const auto facts = inputFacts(display);
    auto applications = makeApplications(frontWay(facts), display, platform.capabilities);
    switch (pasteWay(facts)) {
    case PasteWay::VirtualKeyboard:
        setKeystrokes(platform, std::make_unique<VirtualKeyboardKeystrokes>(display, *applications));
        break;
    case PasteWay::FakeInput:
        setKeystrokes(platform, std::make_unique<FakeInputKeystrokes>(display, *applications));
        break;
    default: addPortalKeystrokes(platform, *applications);
    }
    platform.applications = std::move(applications);
    addBusHotKeys(platform, facts.isKWin);
}

} // namespace

void addWaylandPorts(Platform& platform)
{
    platform.screens = std::make_unique<QtScreens>(std::make_unique<DisplayPanels>(), waylandScreenMode());
    auto pointer = std::make_unique<WaylandPointer>();
    auto& panelsPointer = *pointer;
    platform.pointer = std::move(pointer);
    auto pasteboard = std::make_unique<WaylandPasteboard>();
    platform.dropReader = std::make_unique<WaylandDropReader>(*pasteboard);
    platform.pasteboard = std::move(pasteboard);
    platform.capabilities.set(Capabilities::Part::Clipboard, [] {
        const WaylandRegistry registry(wayland::qtDisplay());
        return unless(registry.version("ext_data_control_manager_v1") > 0
                || registry.version("zwlr_data_control_manager_v1") > 0,
            u"The compositor shows no program the clipboard: log in to a session of X11."_s);
    });
    addInputPorts(platform);
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
