#pragma once

#include "platform/AccessibilityTrust.h"
#include "platform/AdapterCommand.h"
#include "platform/AdapterProcess.h"
#include "platform/Applications.h"
#include "platform/CalendarStore.h"
#include "platform/Capabilities.h"
#include "platform/Clock.h"
#include "platform/DesktopPreferences.h"
#include "platform/DropReader.h"
#include "platform/FolderEvents.h"
#include "platform/HotKeys.h"
#include "platform/Instance.h"
#include "platform/Keystrokes.h"
#include "platform/Locations.h"
#include "platform/LoginItem.h"
#include "platform/MusicApp.h"
#include "platform/Opener.h"
#include "platform/PanelWindow.h"
#include "platform/Pasteboard.h"
#include "platform/Pointer.h"
#include "platform/PowerAssertions.h"
#include "platform/ProgramEnd.h"
#include "platform/Questions.h"
#include "platform/Scheduler.h"
#include "platform/Screens.h"
#include "platform/ScreenshotFolder.h"
#include "platform/Scripting.h"
#include "platform/SessionLock.h"
#include "platform/SharePicker.h"
#include "platform/SystemWords.h"
#include "platform/UserDefaults.h"
#include "platform/WorkQueue.h"

#include <QString>

#include <functional>
#include <memory>
#include <optional>

class QQuickWindow;

namespace nimbarrow {

/// The ports of one system, all set. A capability that the session cannot serve is a port that says so.
struct Platform {
    std::unique_ptr<Clock> clock;
    std::unique_ptr<Scheduler> scheduler;
    std::unique_ptr<WorkQueues> workQueues;
    std::unique_ptr<Locations> locations;
    std::unique_ptr<UserDefaults> userDefaults;
    std::unique_ptr<DesktopPreferences> desktopPreferences;
    std::unique_ptr<Instance> instance;
    std::unique_ptr<ProgramEnd> programEnd;
    std::unique_ptr<Questions> questions;
    std::unique_ptr<LoginItem> loginItem;
    std::unique_ptr<SessionLock> sessionLock;
    std::unique_ptr<Screens> screens;
    std::unique_ptr<Pointer> pointer;
    std::unique_ptr<Pasteboard> pasteboard;
    std::unique_ptr<DropReader> dropReader;
    std::unique_ptr<Applications> applications;
    std::unique_ptr<HotKeys> hotKeys;
    std::unique_ptr<Keystrokes> keystrokes;
    std::unique_ptr<AccessibilityTrust> accessibilityTrust;
    std::unique_ptr<CalendarStore> calendarStore;
    std::unique_ptr<Opener> opener;
    std::unique_ptr<Scripting> scripting;
    std::unique_ptr<FolderEvents> folderEvents;
    std::unique_ptr<ScreenshotFolder> screenshotFolder;
    std::unique_ptr<SharePicker> sharePicker;
    std::unique_ptr<PowerAssertions> powerAssertions;
    std::unique_ptr<AdapterCommand> adapterCommand;
    std::unique_ptr<AdapterProcesses> adapterProcesses;
    std::unique_ptr<MusicApp> musicApp;

    Capabilities capabilities;
    SystemWords words;

    /// Hands the pages that the heap no longer uses back to the system.
    std::function<void()> returnFreeMemory;

    /// Turns a window that was never shown into the panel. The window must outlive the port.
    std::function<std::unique_ptr<PanelWindow>(QQuickWindow& window)> adoptPanel;
};

/// The port alone that reaches a running copy, for a program that may have no display. It is the first thing
/// to be made; the others have one of their own.
[[nodiscard]] std::unique_ptr<Instance> makeInstance();

/// Prepares what must stand before the application object is made, such as the windowing system. None where
/// the program can run here, else why not, as a sentence for the terminal.
[[nodiscard]] std::optional<QString> preparePlatform();

/// Called once, after the application object is made. Each system defines it in one file; the build picks it.
[[nodiscard]] Platform makePlatform();

} // namespace nimbarrow
