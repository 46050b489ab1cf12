#include "clipboard/ScreenshotWatcher.h"

#include "clipboard/ClipboardStore.h"
#include "platform/Clock.h"
#include "platform/ScreenshotFolder.h"
#include "platform/WorkQueue.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QUrl>

#include <algorithm>
#include <filesystem>
#include <optional>
#include <system_error>

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace nimbarrow {

namespace {

// A tool writes a file that it renames, or writes for a while: one scan after the last of it.
constexpr auto scanDelay = 800ms;
// A folder that never rests is looked at all the same.
constexpr auto longestScanDelay = 5s;

/// Sorted, without hidden files; none when the folder cannot be read, which QDir does not tell from an empty
/// one.
std::optional<QStringList> names(const QString& directory)
{
    std::error_code error;
    auto entry = std::filesystem::directory_iterator(QFile::encodeName(directory).toStdString(), error);
    QStringList names;
    while (!error && entry != std::filesystem::directory_iterator()) {
        auto name = QFile::decodeName(entry->path().filename().c_str());
        if (!name.startsWith(u'.'))
            names << std::move(name);
        entry.increment(error);
    }
    if (error)
        return {};
    names.sort();
    return names;
}

QString withoutTilde(const QString& path)
{
    return path == "~"_L1 || path.startsWith("~/"_L1) ? QDir::homePath() + path.sliced(1) : path;
}

/// The folder, or the nearest one above it that is there.
QString existing(QString folder)
{
    while (!QFileInfo(folder).isDir() && folder.size() > 1)
        folder = QFileInfo(folder).path();
    return folder;
}

} // namespace

ScreenshotWatcher::ScreenshotWatcher(ClipboardStore& store, FolderEvents& events,
    const ScreenshotFolder& folder, const Clock& clock, Scheduler& scheduler, WorkQueues& queues,
    QObject* parent)
    : QObject(parent)
    , m_store(store)
    , m_events(events)
    , m_folder(folder)
    , m_clock(clock)
    , m_scheduler(scheduler)
    , m_queue(queues.serial(u"ua.tessak.Nimbarrow.screenshots"_s))
{
}

ScreenshotWatcher::~ScreenshotWatcher() = default;

QStringList ScreenshotWatcher::directories(const ScreenshotFolder& folder)
{
    QStringList directories;
    bool any = false;
    for (const auto& setting : folder.settings()) {
        const auto path = QDir::cleanPath(withoutTilde(setting));
        const QFileInfo entry(path);
        if (!QDir::isAbsolutePath(path) || (entry.exists() && !entry.isDir()))
            continue;
        directories << path;
        any = any || entry.isDir();
    }
    if (!any)
        directories << folder.defaultFolder();
    directories.removeDuplicates();
    return directories;
}

const QStringList& ScreenshotWatcher::namePrefixes()
{
    static const QStringList prefixes { u"Screenshot"_s, u"Screen Shot"_s, u"Знімок екрана"_s,
        u"Снимок экрана"_s, u"Bildschirmfoto"_s, u"Capture d’écran"_s, u"Captura de pantalla"_s,
        u"Zrzut ekranu"_s };
    return prefixes;
}

void ScreenshotWatcher::start()
{
    if (m_isWatching || m_isStarting)
        return;
    m_isStarting = true;
    const auto found = std::make_shared<QStringList>();
    m_queue->run([found, &folder = m_folder] { *found = directories(folder); }, this,
        [this, found] {
            if (m_isStarting)
                begin(*found);
            m_isStarting = false;
        });
}

void ScreenshotWatcher::begin(const QStringList& directories)
{
    m_directories = directories;
    m_since = m_clock.wallTime();
    QStringList folders;
    for (const auto& directory : directories)
        folders << existing(directory);
    m_isWatching = watch(folders);
    m_queue->run([known = m_known, directories] {
        known->clear();
        for (const auto& directory : directories) {
            if (const auto present = names(directory))
                known->insert(directory, QSet<QString>(present->begin(), present->end()));
        }
    });
}

bool ScreenshotWatcher::watch(const QStringList& folders)
{
    std::erase_if(m_watches, [&folders](const auto& watch) { return !folders.contains(watch.first); });
    bool isNew = false;
    for (const auto& folder : folders) {
        if (m_watches.contains(folder))
            continue;
        if (auto watch = m_events.watch(folder, [this] { scheduleScan(); })) {
            m_watches.emplace(folder, std::move(watch));
            isNew = true;
        }
    }
    return isNew;
}

void ScreenshotWatcher::stop()
{
    m_isStarting = false;
    m_isWatching = false;
    m_watches.clear();
}

void ScreenshotWatcher::scheduleScan()
{
    m_pendingScan = m_scheduler.after(scanDelay, [this] { scan(); });
    if (!m_latestScan.isSet())
        m_latestScan = m_scheduler.after(longestScanDelay, [this] { scan(); });
}

void ScreenshotWatcher::scan()
{
    m_pendingScan.cancel();
    m_latestScan.cancel();
    Names unfinished;
    for (const auto& [folder, watch] : m_watches) {
        const auto names = watch->unfinished();
        unfinished.insert(folder, QSet<QString>(names.begin(), names.end()));
    }
    // One that went may have taken others with it.
    if (std::ranges::any_of(m_watches, [](const auto& watch) { return !watch.second->isCurrent(); }))
        m_watches.clear();
    const auto result = std::make_shared<Result>();
    m_queue->run(
        [result, unfinished, known = m_known, directories = m_directories, since = m_since,
            &folder = m_folder] { *result = lookAt(directories, unfinished, *known, since, folder); },
        this,
        [this, result] {
            for (const auto& path : result->found)
                m_store.addScreenshot(QUrl::fromLocalFile(path));
            // What came before the watch is told by nobody.
            if (m_isWatching && watch(result->watchable))
                scan();
        });
}

ScreenshotWatcher::Result ScreenshotWatcher::lookAt(const QStringList& directories, const Names& unfinished,
    Names& known, const QDateTime& since, const ScreenshotFolder& folder)
{
    Result result;
    for (const auto& directory : directories) {
        result.watchable << existing(directory);
        auto present = names(directory);
        if (!present) {
            known.remove(directory);
            continue;
        }
        const auto writing = unfinished.value(directory);
        const bool isNew = !known.contains(directory);
        auto& seen = known[directory];
        present->removeIf([&writing](const QString& name) { return writing.contains(name); });
        for (const auto& name : *present) {
            const QString path = directory + u'/' + name;
            if (!seen.contains(name) && (!isNew || QFileInfo(path).lastModified() >= since)
                && ClipboardStore::isImageFile(name) && isScreenshot(folder, path))
                result.found << path;
        }
        // Names that are gone are forgotten: a file that comes back is a new one.
        seen = QSet<QString>(present->begin(), present->end());
    }
    result.watchable.removeDuplicates();
    return result;
}

bool ScreenshotWatcher::isScreenshot(const ScreenshotFolder& folder, const QString& path)
{
    const QFileInfo file(path);
    if (!file.isFile())
        return false;
    const auto begins = [name = file.fileName()](const QString& prefix) { return name.startsWith(prefix); };
    return std::ranges::any_of(namePrefixes(), begins) || folder.isScreenCapture(path);
}

} // namespace nimbarrow
