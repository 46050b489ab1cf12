#pragma once

#include "platform/FolderEvents.h"
#include "platform/Scheduler.h"

#include <QDateTime>
#include <QHash>
#include <QObject>
#include <QSet>
#include <QStringList>

#include <map>
#include <memory>

namespace nimbarrow {

class ClipboardStore;
class Clock;
class ScreenshotFolder;
class WorkQueue;
class WorkQueues;

/// Adds every new screenshot that the system's tools save to the history.
class ScreenshotWatcher final : public QObject {
    Q_OBJECT

public:
    /// All references outlive the watcher.
    ScreenshotWatcher(ClipboardStore& store, FolderEvents& events, const ScreenshotFolder& folder,
        const Clock& clock, Scheduler& scheduler, WorkQueues& queues, QObject* parent = nullptr);
    ~ScreenshotWatcher() override;

    /// Watches the folders that screenshots are saved to, as soon as it is known which they are; what is
    /// there already is not added. One that does not exist, or ends to, is watched from the moment when it is
    /// made. Where nothing can be watched this may be tried again later.
    void start();
    /// A scan that is on its way still runs.
    void stop();

    /// Where screenshots are saved; the folders need not exist. Any thread; may wait for the system's
    /// settings.
    [[nodiscard]] static QStringList directories(const ScreenshotFolder& folder);

    /// How the names begin that the system's tool gives to screenshots, in several languages.
    [[nodiscard]] static const QStringList& namePrefixes();

private:
    /// By folder, the names that have been seen in it.
    using Names = QHash<QString, QSet<QString>>;
    struct Result {
        /// The paths of new screenshots.
        QStringList found;
        /// The folders that tell of every change.
        QStringList watchable;
    };

    void begin(const QStringList& directories);
    /// False when no watch has come that was not there.
    bool watch(const QStringList& folders);
    void scheduleScan();
    void scan();
    /// What is not in `known`, which knows everything in the folders afterwards. What is `unfinished` is for
    /// a later scan.
    [[nodiscard]] static Result lookAt(const QStringList& directories, const Names& unfinished, Names& known,
        const QDateTime& since, const ScreenshotFolder& folder);
    [[nodiscard]] static bool isScreenshot(const ScreenshotFolder& folder, const QString& path);

    ClipboardStore& m_store;
    FolderEvents& m_events;
    const ScreenshotFolder& m_folder;
    const Clock& m_clock;
    Scheduler& m_scheduler;
    /// Belongs to the queue.
    std::shared_ptr<Names> m_known = std::make_shared<Names>();
    /// Until it is known where.
    bool m_isStarting = false;
    bool m_isWatching = false;
    QStringList m_directories;
    /// In a folder that is made later, what is older than this was moved there.
    QDateTime m_since;
    std::map<QString, std::unique_ptr<FolderEvents::Watch>> m_watches;
    Timer m_pendingScan;
    Timer m_latestScan;
    std::unique_ptr<WorkQueue> m_queue;
};

} // namespace nimbarrow
