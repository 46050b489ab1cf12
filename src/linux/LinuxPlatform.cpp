#include "platform/Platform.h"
#include "linux/session/AutostartLoginItem.h"
#include "linux/session/BusInstance.h"
#include "linux/calendar/CalendarStorePlugin.h"
#include "linux/calendar/DayWatch.h"
#include "linux/applications/DesktopOpener.h"
#include "linux/screenshots/DesktopScreenshotFolder.h"
#include "linux/display/DisplayPanels.h"
#include "linux/session/InheritedState.h"
#include "linux/screenshots/InotifyFolderEvents.h"
#include "linux/media/LinuxAdapterCommand.h"
#include "linux/calendar/LinuxCalendarStore.h"
#include "linux/pasteboard/MimeDropReader.h"
#include "linux/power/LinuxPowerAssertions.h"
#include "linux/session/LinuxPreferences.h"
#include "linux/media/NoMusicApp.h"
#include "linux/media/NoScripting.h"
#include "linux/applications/PortalSharePicker.h"
#include "linux/session/SessionBus.h"
#include "linux/session/XdgLocations.h"
#include "qt/QSettingsDefaults.h"
#include "qt/QtAdapterProcesses.h"
#include "qt/QtScheduler.h"
#include "linux/display/QtScreens.h"
#include "qt/QtWorkQueues.h"
#include "qt/SystemClock.h"
#include "linux/applications/X11Applications.h"
#include "linux/keys/X11HotKeys.h"
#include "linux/keys/X11Keystrokes.h"
#include "linux/panel/X11PanelWindow.h"
#include "linux/pasteboard/X11Pasteboard.h"
#include "linux/display/X11Pointer.h"
#include "linux/keys/X11Trust.h"

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
    platform.instance
        = std::make_unique<BusInstance>(platform.locations->applicationSupport() + "/Nimbarrow"_L1);
    platform.loginItem
        = std::make_unique<AutostartLoginItem>(configuration, QCoreApplication::applicationFilePath());
    platform.screens = std::make_unique<QtScreens>(std::make_unique<DisplayPanels>());
    platform.pointer = std::make_unique<X11Pointer>();
    platform.pasteboard = std::make_unique<X11Pasteboard>();
    platform.dropReader = std::make_unique<MimeDropReader>();
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
