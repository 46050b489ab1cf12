#include "linux/applications/DesktopOpener.h"
#include "linux/applications/PortalSharePicker.h"
#include "linux/applications/X11Applications.h"
#include "linux/calendar/CalendarStorePlugin.h"
#include "linux/calendar/DayWatch.h"
#include "linux/calendar/LinuxCalendarStore.h"
#include "linux/display/DisplayPanels.h"
#include "linux/display/QtScreens.h"
#include "linux/display/X11Pointer.h"
#include "linux/display/X11Properties.h"
#include "linux/keys/X11HotKeys.h"
#include "linux/keys/X11Keystrokes.h"
#include "linux/keys/X11Trust.h"
#include "linux/media/LinuxAdapterCommand.h"
#include "linux/media/NoMusicApp.h"
#include "linux/media/NoScripting.h"
#include "linux/panel/X11PanelWindow.h"
#include "linux/pasteboard/X11DropReader.h"
#include "linux/pasteboard/X11Pasteboard.h"
#include "linux/power/LinuxPowerAssertions.h"
#include "linux/power/X11ScreenSaver.h"
#include "linux/screenshots/DesktopScreenshotFolder.h"
#include "linux/screenshots/InotifyFolderEvents.h"
#include "linux/session/AutostartLoginItem.h"
#include "linux/session/BusInstance.h"
#include "linux/session/InheritedState.h"
#include "linux/session/LinuxPreferences.h"
#include "linux/session/LinuxProgramEnd.h"
#include "linux/session/LinuxSessionLock.h"
#include "linux/session/NotificationQuestions.h"
#include "linux/session/SessionBus.h"
#include "linux/session/XdgLocations.h"
#include "platform/Platform.h"
#include "qt/ProcessSetup.h"
#include "qt/QtAdapterProcesses.h"
#include "qt/QtScheduler.h"
#include "qt/QtWorkQueues.h"
#include "qt/SettingsFile.h"
#include "qt/SystemClock.h"

#include <QCoreApplication>

#include <algorithm>
#include <malloc.h>
#include <xcb/xcb.h>
#include <xcb/xfixes.h>

using namespace Qt::StringLiterals;

namespace nimbarrow {

namespace {

/// What is freed goes back to the system, whichever thread has had it. Left to itself malloc() makes a heap
/// for every thread, of which malloc_trim() leaves the ends alone, and lets them grow to the size of the
/// largest text ever copied.
void keepHeapsSmall()
{
    constexpr int megabyte = 1 << 20;
    ::mallopt(M_MMAP_THRESHOLD, megabyte);
    ::mallopt(M_TRIM_THRESHOLD, megabyte);
    // The threads hardly ever work at the same time.
    ::mallopt(M_ARENA_MAX, 1);
}

/// As it was before anything was changed or made.
const InheritedState& inheritedState()
{
    static const auto state = [] {
        keepHeapsSmall();
        return InheritedState::now();
    }();
    return state;
}

using XConnection = std::unique_ptr<xcb_connection_t, decltype(&xcb_disconnect)>;

/// Qt would abort where there is no display, and on another windowing system nothing here would work.
std::optional<QString> displayObstacle(const XConnection& connection)
{
    const auto platforms = qEnvironmentVariable("QT_QPA_PLATFORM").split(u';', Qt::SkipEmptyParts);
    const bool isX11 = std::ranges::all_of(
        platforms, [](const QString& platform) { return platform.section(u':', 0, 0) == "xcb"_L1; });
    if (!isX11)
        return u"It needs an X server and cannot run with QT_QPA_PLATFORM=%1."_s.arg(platforms.join(u';'));
    if (!xcb_connection_has_error(connection.get()))
        return {};
    const auto display = qEnvironmentVariable("DISPLAY");
    return display.isEmpty() ? u"There is no display: DISPLAY is not set."_s
                             : u"The display %1 cannot be opened."_s.arg(display);
}

std::unique_ptr<CalendarStore> makeCalendarStore(UserDefaults& defaults, const Locations& locations)
{
    const auto folder = locations.applicationSupport() + "/Nimbarrow/calendars"_L1;
    return std::make_unique<LinuxCalendarStore>(defaults, liveSessionBus(),
        LinuxCalendarStore::Stores {
            [] { return CalendarStorePlugin::load(u"nimbarrow-calendar-server"_s, {}); },
            [folder] { return CalendarStorePlugin::load(u"nimbarrow-calendar-folder"_s, folder); } },
        std::make_unique<DayWatch>(liveSystemBus()));
}

Capability unless(bool works, const QString& words, const QString& ukrainianWords = {})
{
    return works ? Capability() : Capability { Capability::State::NotHere, words, ukrainianWords };
}

/// What the ports of any session say of themselves.
void addCapabilities(Platform& platform)
{
    using Part = Capabilities::Part;
    platform.capabilities.set(Part::Paste, [&trust = *platform.accessibilityTrust] {
        return unless(trust.isTrusted(), u"Programs may not type here: press Control-V after the click."_s,
            u"Програмам тут не дозволено друкувати: після кліку натисни Ctrl+V."_s);
    });
    platform.capabilities.set(Part::Player, [] {
        return unless(liveSessionBus().has_value(),
            u"There is no message bus: start the session with dbus-run-session."_s);
    });
}

/// What the windowing system knows. A session of another kind sets its own answers here.
void addX11Capabilities(Capabilities& capabilities, X11HotKeys& hotKeys)
{
    using Part = Capabilities::Part;
    capabilities.set(Part::Clipboard, [] {
        return unless(x11::majorOpcode(x11::qtConnection(), &xcb_xfixes_id) != 0,
            u"The X server lacks the XFixes extension: start it with that."_s);
    });
    capabilities.set(Part::HotKey, [&hotKeys] {
        return unless(!hotKeys.isTaken(Key::V, KeyModifier::Command | KeyModifier::Shift),
            u"Another program holds Super+Shift+V: give a key of the desktop 'nimbarrow --toggle'."_s,
            u"Super+Shift+V зайнято: признач клавіші системи nimbarrow --toggle."_s);
    });
    capabilities.set(Part::FrontApplication, [] {
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

} // namespace

std::unique_ptr<Instance> makeInstance()
{
    inheritedState();
    return std::make_unique<BusInstance>(XdgLocations().applicationSupport() + "/Nimbarrow"_L1);
}

std::optional<QString> preparePlatform()
{
    inheritedState();
    // On a Wayland session too: a panel that stands above everything is an X11 window there.
    processsetup::setUnlessSet("QT_QPA_PLATFORM", "xcb");
    // The panel is small; a GL driver would cost three times the memory of the whole program.
    processsetup::setUnlessSet("QT_QUICK_BACKEND", "software");
    // A byte is too little for a file, and, unlike none, it keeps the kernel from handing it all to a crash
    // handler.
    processsetup::keepContentsPrivate(1);
    const XConnection connection(xcb_connect(nullptr, nullptr), &xcb_disconnect);
    if (const auto obstacle = displayObstacle(connection))
        return obstacle;
    hideSilentBuses(QString::fromUtf8(x11::property(
        connection.get(), x11::rootWindow(connection.get()), x11::atom(connection.get(), "AT_SPI_BUS"))));
    return {};
}

Platform makePlatform()
{
    showHiddenBuses();
    Platform platform;
    platform.clock = std::make_unique<SystemClock>();
    platform.scheduler = std::make_unique<QtScheduler>();
    platform.workQueues = std::make_unique<QtWorkQueues>();
    platform.locations = std::make_unique<XdgLocations>();
    const auto configuration = XdgLocations::configuration();
    platform.userDefaults = std::make_unique<SettingsFile>(
        configuration + "/Nimbarrow.conf"_L1, *platform.workQueues, *platform.scheduler);
    platform.desktopPreferences = std::make_unique<LinuxPreferences>(liveSessionBus());
    platform.instance = makeInstance();
    platform.programEnd = std::make_unique<LinuxProgramEnd>(liveSystemBus());
    platform.questions = std::make_unique<NotificationQuestions>(liveSessionBus());
    platform.loginItem
        = std::make_unique<AutostartLoginItem>(configuration, QCoreApplication::applicationFilePath());
    auto sessionLock = std::make_unique<LinuxSessionLock>(liveSessionBus(), liveSystemBus());
    auto& lock = *sessionLock;
    platform.sessionLock = std::move(sessionLock);
    platform.screens = std::make_unique<QtScreens>(std::make_unique<DisplayPanels>());
    platform.pointer = std::make_unique<X11Pointer>();
    auto pasteboard = std::make_unique<X11Pasteboard>();
    platform.dropReader = std::make_unique<X11DropReader>(*pasteboard);
    platform.pasteboard = std::move(pasteboard);
    auto applications = std::make_unique<X11Applications>();
    platform.keystrokes = std::make_unique<X11Keystrokes>(*applications);
    platform.applications = std::move(applications);
    auto hotKeys = std::make_unique<X11HotKeys>();
    addX11Capabilities(platform.capabilities, *hotKeys);
    platform.hotKeys = std::move(hotKeys);
    platform.accessibilityTrust = std::make_unique<X11Trust>();
    platform.calendarStore = makeCalendarStore(*platform.userDefaults, *platform.locations);
    platform.opener = std::make_unique<DesktopOpener>(inheritedState(), liveSessionBus());
    platform.scripting = std::make_unique<NoScripting>();
    platform.words = { u"Super+Shift+V"_s, u"/usr"_s, u"Settings"_s, u"Параметри"_s, u"computer"_s };
    platform.returnFreeMemory = [] { ::malloc_trim(0); };
    platform.folderEvents = std::make_unique<InotifyFolderEvents>();
    platform.screenshotFolder = std::make_unique<DesktopScreenshotFolder>();
    platform.sharePicker
        = std::make_unique<PortalSharePicker>(inheritedState(), liveSessionBus(), *platform.workQueues);
    platform.powerAssertions = std::make_unique<LinuxPowerAssertions>(
        liveSessionBus(), liveSystemBus(), [] { return x11::suspendScreenSaver(); }, *platform.scheduler);
    platform.adapterCommand = std::make_unique<LinuxAdapterCommand>(QCoreApplication::applicationDirPath());
    platform.adapterProcesses = std::make_unique<QtAdapterProcesses>();
    platform.musicApp = std::make_unique<NoMusicApp>();
    platform.adoptPanel = [&lock](QQuickWindow& window) {
        auto panel = std::make_unique<X11PanelWindow>(window);
        lock.follow(panel->cover());
        return panel;
    };
    addCapabilities(platform);
    return platform;
}

} // namespace nimbarrow
