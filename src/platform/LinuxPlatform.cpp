#include "platform/Platform.h"
#include "platform/linux/AutostartLoginItem.h"
#include "platform/linux/BusInstance.h"
#include "platform/linux/CalendarStorePlugin.h"
#include "platform/linux/DayWatch.h"
#include "platform/linux/DesktopOpener.h"
#include "platform/linux/DesktopScreenshotFolder.h"
#include "platform/linux/DisplayPanels.h"
#include "platform/linux/InheritedState.h"
#include "platform/linux/InotifyFolderEvents.h"
#include "platform/linux/LinuxAdapterCommand.h"
#include "platform/linux/LinuxCalendarStore.h"
#include "platform/linux/LinuxPowerAssertions.h"
#include "platform/linux/LinuxPreferences.h"
#include "platform/linux/NoMusicApp.h"
#include "platform/linux/NoScripting.h"
#include "platform/linux/PortalSharePicker.h"
#include "platform/linux/SessionBus.h"
#include "platform/linux/XdgLocations.h"
#include "platform/qt/QSettingsDefaults.h"
#include "platform/qt/QtAdapterProcesses.h"
#include "platform/qt/QtScheduler.h"
#include "platform/qt/QtScreens.h"
#include "platform/qt/QtWorkQueues.h"
#include "platform/qt/SystemClock.h"
#include "platform/x11/X11Applications.h"
#include "platform/x11/X11HotKeys.h"
#include "platform/x11/X11Keystrokes.h"
#include "platform/x11/X11PanelWindow.h"
#include "platform/x11/X11Pasteboard.h"
#include "platform/x11/X11Pointer.h"
#include "platform/x11/X11Trust.h"

#include <QCoreApplication>

#include <malloc.h>
#include <sys/resource.h>
#include <sys/stat.h>

using namespace Qt::StringLiterals;

namespace nimbarrow {

namespace {

void setUnlessSet(const char* variable, const char* value)
{
    if (!qEnvironmentVariableIsSet(variable))
        qputenv(variable, value);
}

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

/// As it was before preparePlatform().
const InheritedState& inheritedState()
{
    static const auto state = InheritedState::now();
    return state;
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

} // namespace

void preparePlatform()
{
    keepHeapsSmall();
    inheritedState();
    // On a Wayland session too: a panel that stands above everything is an X11 window there.
    setUnlessSet("QT_QPA_PLATFORM", "xcb");
    // The panel is small; a GL driver would cost three times the memory of the whole program.
    setUnlessSet("QT_QUICK_BACKEND", "software");
    // What the program writes is what the user copied.
    ::umask(S_IRWXG | S_IRWXO);
    // So is what its memory holds, and a crash would put it into a file that outlives the entries.
    rlimit core {};
    ::getrlimit(RLIMIT_CORE, &core);
    core.rlim_cur = 0;
    ::setrlimit(RLIMIT_CORE, &core);
}

Platform makePlatform()
{
    Platform platform;
    platform.clock = std::make_unique<SystemClock>();
    platform.scheduler = std::make_unique<QtScheduler>();
    platform.workQueues = std::make_unique<QtWorkQueues>();
    platform.locations = std::make_unique<XdgLocations>();
    const auto configuration = XdgLocations::configuration();
    platform.userDefaults = std::make_unique<QSettingsDefaults>(configuration + "/Nimbarrow.conf"_L1);
    platform.desktopPreferences = std::make_unique<LinuxPreferences>(liveSessionBus());
    platform.instance = std::make_unique<BusInstance>();
    platform.loginItem
        = std::make_unique<AutostartLoginItem>(configuration, QCoreApplication::applicationFilePath());
    platform.screens = std::make_unique<QtScreens>(std::make_unique<DisplayPanels>());
    platform.pointer = std::make_unique<X11Pointer>();
    platform.pasteboard = std::make_unique<X11Pasteboard>();
    auto applications = std::make_unique<X11Applications>();
    platform.keystrokes = std::make_unique<X11Keystrokes>(*applications);
    platform.applications = std::move(applications);
    platform.hotKeys = std::make_unique<X11HotKeys>();
    platform.accessibilityTrust = std::make_unique<X11Trust>();
    platform.calendarStore = makeCalendarStore(*platform.userDefaults, *platform.locations);
    platform.opener = std::make_unique<DesktopOpener>(inheritedState(), liveSessionBus());
    platform.scripting = std::make_unique<NoScripting>();
    platform.returnFreeMemory = [] { ::malloc_trim(0); };
    platform.folderEvents = std::make_unique<InotifyFolderEvents>();
    platform.screenshotFolder = std::make_unique<DesktopScreenshotFolder>();
    platform.sharePicker
        = std::make_unique<PortalSharePicker>(inheritedState(), liveSessionBus(), *platform.workQueues);
    platform.powerAssertions = std::make_unique<LinuxPowerAssertions>(liveSessionBus(), liveSystemBus());
    platform.adapterCommand = std::make_unique<LinuxAdapterCommand>(QCoreApplication::applicationDirPath());
    platform.adapterProcesses = std::make_unique<QtAdapterProcesses>();
    platform.musicApp = std::make_unique<NoMusicApp>();
    platform.adoptPanel = [](QQuickWindow& window) { return std::make_unique<X11PanelWindow>(window); };
    return platform;
}

} // namespace nimbarrow
