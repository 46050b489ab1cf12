// Watches the clipboard with the program's own adapter, capture and store, and prints each text on a line as
// soon as it is an entry of the history, and an empty line for each image.
#include "clipboard/ClipboardMonitor.h"
#include "clipboard/ClipboardStore.h"
#include "clipboard/PasteboardCapture.h"
#include "linux/pasteboard/WaylandPasteboard.h"
#include "linux/pasteboard/X11Pasteboard.h"
#include "preferences/Settings.h"
#include "qt/QtScheduler.h"
#include "qt/QtWorkQueues.h"
#include "qt/SystemClock.h"
#include "support/FakeDesktop.h"

#include <QCoreApplication>
#include <QTemporaryDir>

#include <cstdio>

using namespace Qt::StringLiterals;
using namespace nimbarrow;

int main(int argc, char* argv[])
{
    const QCoreApplication application(argc, argv);
    const QTemporaryDir disk;
    FakeUserDefaults defaults;
    defaults.values.insert(u"historyLimit"_s, 1000);
    FakeLoginItem loginItem;
    FakeTrust trust;
    const FakeDesktopPreferences desktop;
    FakeLocations locations;
    locations.folder = disk.path();
    const FakeApplications applications;
    const SystemClock clock;
    QtScheduler scheduler;
    QtWorkQueues queues;
    const Settings settings(defaults, loginItem, trust, desktop, scheduler);
    ClipboardStore store(settings, locations, clock, scheduler, queues);
    PasteboardCapture capture(store, queues);
    std::unique_ptr<Pasteboard> pasteboard;
    if (qEnvironmentVariableIsSet("WAYLAND_DISPLAY"))
        pasteboard = std::make_unique<WaylandPasteboard>();
    else
        pasteboard = std::make_unique<X11Pasteboard>();
    ClipboardMonitor monitor(capture, *pasteboard, applications, scheduler);
    store.onNewItem = [](const ClipboardItem& item) {
        std::puts(qUtf8Printable(item.text.value_or(QString())));
        std::fflush(stdout);
    };
    monitor.start();
    std::puts("ready");
    std::fflush(stdout);
    return QCoreApplication::exec();
}
