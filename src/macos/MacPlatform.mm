#include "macos/applications/MacApplications.h"
#include "macos/applications/MacOpener.h"
#include "macos/applications/MacSharePicker.h"
#include "macos/calendar/MacCalendarStore.h"
#include "macos/display/MacPointer.h"
#include "macos/display/MacScreens.h"
#include "macos/keys/MacHotKeys.h"
#include "macos/keys/MacKeystrokes.h"
#include "macos/keys/MacTrust.h"
#include "macos/media/MacAdapterCommand.h"
#include "macos/media/MacMusicApp.h"
#include "macos/media/MacScripting.h"
#include "macos/panel/MacPanelWindow.h"
#include "macos/pasteboard/MacDropReader.h"
#include "macos/pasteboard/MacPasteboard.h"
#include "macos/power/MacPowerAssertions.h"
#include "macos/screenshots/MacFolderEvents.h"
#include "macos/screenshots/MacScreenshotFolder.h"
#include "macos/session/BundlePlace.h"
#include "macos/session/MacInstance.h"
#include "macos/session/MacLocations.h"
#include "macos/session/MacLoginItem.h"
#include "macos/session/MacPreferences.h"
#include "macos/session/MacProgramEnd.h"
#include "macos/session/MacSessionLock.h"
#include "macos/session/MacUserDefaults.h"
#include "macos/session/UnifiedLog.h"
#include "platform/Platform.h"
#include "qt/ProcessSetup.h"
#include "qt/QtAdapterProcesses.h"
#include "qt/QtScheduler.h"
#include "qt/QtWorkQueues.h"
#include "qt/SystemClock.h"

#include <QCoreApplication>

#include <malloc/malloc.h>

using namespace Qt::StringLiterals;

namespace nimbarrow {

std::unique_ptr<Instance> makeInstance()
{
    return std::make_unique<MacInstance>();
}

std::optional<QString> preparePlatform()
{
    unifiedlog::start();
    // The panel is small; a GPU renderer would cost more memory than the whole program.
    processsetup::setUnlessSet("QT_QUICK_BACKEND", "software");
    // Qt would bring the program to the front when it starts, and when it raises a window.
    processsetup::setUnlessSet("QT_MAC_DISABLE_FOREGROUND_APPLICATION_TRANSFORM", "1");
    processsetup::setUnlessSet("QT_MAC_SET_RAISE_PROCESS", "0");
    processsetup::keepContentsPrivate(0);
    return {};
}

Platform makePlatform()
{
    Platform platform;
    platform.clock = std::make_unique<SystemClock>();
    platform.scheduler = std::make_unique<QtScheduler>();
    platform.workQueues = std::make_unique<QtWorkQueues>();
    platform.locations = std::make_unique<MacLocations>();
    platform.userDefaults = std::make_unique<MacUserDefaults>();
    platform.desktopPreferences = std::make_unique<MacPreferences>();
    platform.instance = makeInstance();
    platform.programEnd = std::make_unique<MacProgramEnd>();
    platform.sessionLock = std::make_unique<MacSessionLock>();
    platform.loginItem = std::make_unique<MacLoginItem>();
    platform.screens = std::make_unique<MacScreens>();
    platform.pointer = std::make_unique<MacPointer>();
    platform.pasteboard = std::make_unique<MacPasteboard>();
    platform.dropReader = std::make_unique<MacDropReader>();
    platform.applications = std::make_unique<MacApplications>();
    platform.hotKeys = std::make_unique<MacHotKeys>();
    platform.keystrokes = std::make_unique<MacKeystrokes>();
    platform.accessibilityTrust = std::make_unique<MacTrust>();
    platform.calendarStore = std::make_unique<MacCalendarStore>();
    platform.opener = std::make_unique<MacOpener>();
    platform.scripting = std::make_unique<MacScripting>();
    platform.folderEvents = std::make_unique<MacFolderEvents>();
    platform.screenshotFolder = std::make_unique<MacScreenshotFolder>();
    platform.sharePicker = std::make_unique<MacSharePicker>();
    platform.powerAssertions = std::make_unique<MacPowerAssertions>();
    platform.adapterCommand
        = std::make_unique<MacAdapterCommand>(bundleplace::resources(QCoreApplication::applicationDirPath()));
    platform.adapterProcesses = std::make_unique<QtAdapterProcesses>();
    platform.musicApp = std::make_unique<MacMusicApp>();
    platform.words
        = { u"⌘⇧V"_s, u"Command-V"_s, u"/Applications"_s, u"System Settings"_s, u"Системні параметри"_s };
    platform.returnFreeMemory = [] { malloc_zone_pressure_relief(nullptr, 0); };
    platform.adoptPanel = [](QQuickWindow& window) { return std::make_unique<MacPanelWindow>(window); };
    return platform;
}

} // namespace nimbarrow
