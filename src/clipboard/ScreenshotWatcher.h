#pragma once

#include "platform/FolderEvents.h"
#include "platform/Scheduler.h"

#include <QObject>
#include <QSet>
#include <QStringList>

#include <memory>

namespace nimbarrow {

class ClipboardStore;
class ScreenshotFolder;
class WorkQueue;
class WorkQueues;

/// Adds every new screenshot that the system's tool saves to the history.
class ScreenshotWatcher final : public QObject {
    Q_OBJECT

public:
    /// All references outlive the watcher.
    ScreenshotWatcher(ClipboardStore& store, FolderEvents& events, const ScreenshotFolder& folder,
        Scheduler& scheduler, WorkQueues& queues, QObject* parent = nullptr);
    ~ScreenshotWatcher() override;

    /// Watches the folder that the system saves to now, as soon as it is known which that is; what is there
    /// already is not added. A folder that cannot be watched may be tried again later.
    void start();
    /// A scan that is on its way still runs.
    void stop();

    /// Where the system saves screenshots. Any thread; may wait for the system's settings.
    [[nodiscard]] static QString screenshotDirectory(const ScreenshotFolder& folder);

    /// How the names begin that the system's tool gives to screenshots, in several languages.
    [[nodiscard]] static const QStringList& namePrefixes();

private:
    void watch(const QString& directory);
    void scheduleScan();
    void scan();
    [[nodiscard]] static bool isScreenshot(const ScreenshotFolder& folder, const QString& path);
    /// The paths of screenshots that are not in `known`, which knows everything in the folder afterwards.
    /// Those that are `unfinished` are for a later scan.
    [[nodiscard]] static QStringList takeNew(const QString& directory, const QStringList& unfinished,
        QSet<QString>& known, const ScreenshotFolder& folder);

    ClipboardStore& m_store;
    FolderEvents& m_events;
    const ScreenshotFolder& m_folder;
    Scheduler& m_scheduler;
    /// The names seen in the folder. Belongs to the queue.
    std::shared_ptr<QSet<QString>> m_known = std::make_shared<QSet<QString>>();
    /// Until it is known where.
    bool m_isStarting = false;
    QString m_directory;
    std::unique_ptr<FolderEvents::Watch> m_source;
    Timer m_pendingScan;
    std::unique_ptr<WorkQueue> m_queue;
};

} // namespace nimbarrow
