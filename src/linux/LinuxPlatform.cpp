#include "linux/DisplayPorts.h"
#include "linux/applications/DesktopOpener.h"
#include "linux/applications/PortalSharePicker.h"
#include "linux/calendar/CalendarStorePlugin.h"
#include "linux/calendar/DayWatch.h"
#include "linux/calendar/LinuxCalendarStore.h"
#include "linux/display/DisplayChoice.h"
#include "linux/display/WaylandRegistry.h"
#include "linux/display/X11Properties.h"
#include "linux/media/LinuxAdapterCommand.h"
#include "linux/screenshots/DesktopScreenshotFolder.h"
#include "linux/screenshots/InotifyFolderEvents.h"
#include "linux/session/AutostartLoginItem.h"
#include "linux/session/BusInstance.h"
#include "linux/session/InheritedState.h"
#include "linux/session/InstalledFile.h"
#include "linux/session/LinuxPreferences.h"
#include "linux/session/LinuxProgramEnd.h"
#include "linux/session/LinuxSessionLock.h"
#include "linux/session/NotificationQuestions.h"
#include "linux/session/PortalRequest.h"
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
#include <QFile>

#include <algorithm>
#include <malloc.h>
#include <xcb/xcb.h>

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

bool hasPlugin(const QString& name)
{
    const auto folders = QCoreApplication::libraryPaths();
    return std::ranges::any_of(folders, [&name](const QString& folder) {
        return QFile::exists(folder + "/platforms/lib"_L1 + name + ".so"_L1);
    });
}

DisplayFacts displayFacts()
{
    DisplayFacts facts;
    facts.requested = qEnvironmentVariable("QT_QPA_PLATFORM");
    facts.x11Display = qEnvironmentVariable("DISPLAY");
    facts.x11Answers = [] { return !xcb_connection_has_error(x11::connect().get()); };
    facts.waylandDisplay = qEnvironmentVariable("WAYLAND_DISPLAY");
    if (facts.waylandDisplay.isEmpty())
        return facts;
    const std::unique_ptr<wl_display, decltype(&wl_display_disconnect)> wayland(
        wl_display_connect(nullptr), &wl_display_disconnect);
    if (!wayland)
        return facts;
    facts.waylandAnswers = true;
    // Qt's part in it is a package of its own.
    facts.waylandHasLayerShell = hasPlugin(u"qwayland-generic"_s)
        && WaylandRegistry(wayland.get()).version("zwlr_layer_shell_v1") > 0;
    return facts;
}

/// As preparePlatform() has chosen it.
DisplaySystem chosenSystem = DisplaySystem::X11;

/// As the X server has it.
QString accessibilityAddress()
{
    const auto connection = x11::connect();
    return QString::fromUtf8(x11::property(
        connection.get(), x11::rootWindow(connection.get()), x11::atom(connection.get(), "AT_SPI_BUS")));
}

std::unique_ptr<CalendarStore> makeCalendarStore(UserDefaults& defaults, const Locations& locations)
{
    const auto folder = locations.applicationSupport() + "/Nimbarrow/calendars"_L1;
    return std::make_unique<LinuxCalendarStore>(defaults, liveSessionBus(),
        LinuxCalendarStore::Stores {
            [] { return CalendarStorePlugin::load(u"nimbarrow-calendar-server"_s, {}); },
            [folder] { return CalendarStorePlugin::load(u"nimbarrow-calendar-folder"_s, folder); }, folder },
        std::make_unique<DayWatch>(liveSystemBus()));
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
    // The panel is small; a GL driver would cost three times the memory of the whole program.
    processsetup::setUnlessSet("QT_QUICK_BACKEND", "software");
    // A byte is too little for a file, and, unlike none, it keeps the kernel from handing it all to a crash
    // handler.
    processsetup::keepContentsPrivate(1);
    const auto choice = chooseDisplay(displayFacts());
    if (!choice.obstacle.isEmpty())
        return choice.obstacle;
    chosenSystem = choice.system;
    // Qt would try others, too, or abort.
    qputenv("QT_QPA_PLATFORM", choice.platform.toLocal8Bit());
    // For a window that gets its place from us, and not from Qt.
    qputenv("QT_WAYLAND_USE_BYPASSWINDOWMANAGERHINT", "1");
    // It has no frame, and to learn whether it could Qt would load that driver all the same.
    qputenv("QT_WAYLAND_DISABLE_WINDOWDECORATION", "1");
    hideSilentBuses(choice.system == DisplaySystem::Wayland ? QString() : accessibilityAddress());
    return {};
}

Platform makePlatform()
{
    showHiddenBuses();
    if (const auto bus = liveSessionBus())
        introduceToPortals(*bus);
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
    platform.calendarStore = makeCalendarStore(*platform.userDefaults, *platform.locations);
    platform.opener = std::make_unique<DesktopOpener>(inheritedState(), liveSessionBus());
    platform.scripting = std::make_unique<Scripting>();
    platform.words
        = { u"Super+Shift+V"_s, u"Control-V"_s, u"/usr"_s, u"Settings"_s, u"Параметри"_s, u"computer"_s };
    platform.returnFreeMemory = [] { ::malloc_trim(0); };
    platform.folderEvents = std::make_unique<InotifyFolderEvents>();
    platform.screenshotFolder = std::make_unique<DesktopScreenshotFolder>();
    platform.sharePicker
        = std::make_unique<PortalSharePicker>(inheritedState(), liveSessionBus(), *platform.workQueues);
    platform.adapterCommand
        = std::make_unique<LinuxAdapterCommand>(installedFile("nimbarrow-media-adapter"_L1));
    platform.adapterProcesses = std::make_unique<QtAdapterProcesses>();
    platform.musicApp = std::make_unique<MusicApp>();
    if (chosenSystem == DisplaySystem::Wayland)
        addWaylandPorts(platform);
    else
        addX11Ports(platform, chosenSystem, lock);
    platform.capabilities.set(Capabilities::Part::Player, [] {
        return unless(liveSessionBus().has_value(),
            u"There is no message bus: start the session with dbus-run-session."_s);
    });
    return platform;
}

} // namespace nimbarrow
