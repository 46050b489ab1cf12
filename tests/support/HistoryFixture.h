#pragma once

#include "clipboard/ClipboardStore.h"
#include "preferences/Settings.h"
#include "support/FakeDesktop.h"
#include "support/ManualQueues.h"
#include "support/ManualTime.h"

#include <QTemporaryDir>

namespace nimbarrow {

/// A history in a folder of its own, over doubles of everything around it.
struct HistoryFixture {
    QTemporaryDir disk;
    ManualTime time;
    ManualQueues queues;
    FakeUserDefaults defaults;
    FakeLoginItem loginItem;
    FakeTrust trust;
    FakeDesktopPreferences desktop;
    FakeLocations locations;
    Settings settings { defaults, loginItem, trust, desktop, time };
    std::unique_ptr<ClipboardStore> store = start();

    /// As the program does it when it starts.
    std::unique_ptr<ClipboardStore> start()
    {
        if (locations.folder.isEmpty())
            locations.folder = disk.path();
        return std::make_unique<ClipboardStore>(settings, locations, time, time, queues);
    }

    void restart()
    {
        store.reset();
        store = start();
    }

    [[nodiscard]] QString path(const QString& name) const
    {
        return locations.folder + QStringLiteral("/Nimbarrow/") + name;
    }
};

} // namespace nimbarrow
