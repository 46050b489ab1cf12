#include "clipboard/ScreenshotWatcher.h"

#include "clipboard/ClipboardStore.h"
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

} // namespace

ScreenshotWatcher::ScreenshotWatcher(ClipboardStore& store, FolderEvents& events,
    const ScreenshotFolder& folder, Scheduler& scheduler, WorkQueues& queues, QObject* parent)
    : QObject(parent)
    , m_store(store)
    , m_events(events)
    , m_folder(folder)
    , m_scheduler(scheduler)
    , m_queue(queues.serial(u"ua.tessak.Nimbarrow.screenshots"_s))
{
}

ScreenshotWatcher::~ScreenshotWatcher() = default;

QString ScreenshotWatcher::screenshotDirectory(const ScreenshotFolder& folder)
{
    for (const auto& setting : folder.settings()) {
        const auto path = withoutTilde(setting);
        if (QDir::isAbsolutePath(path) && QFileInfo(path).isDir())
            return QDir::cleanPath(path);
    }
    return folder.defaultFolder();
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
    if (m_source || m_isStarting)
        return;
    m_isStarting = true;
    const auto directory = std::make_shared<QString>();
    m_queue->run([directory, &folder = m_folder] { *directory = screenshotDirectory(folder); }, this,
        [this, directory] {
            if (m_isStarting)
                watch(*directory);
            m_isStarting = false;
        });
}

void ScreenshotWatcher::watch(const QString& directory)
{
    m_directory = directory;
    m_source = m_events.watch(directory, [this] { scheduleScan(); });
    if (!m_source)
        return;
    m_queue->run([known = m_known, directory] {
        if (const auto present = names(directory))
            *known = QSet<QString>(present->begin(), present->end());
    });
}

void ScreenshotWatcher::stop()
{
    m_isStarting = false;
    m_source.reset();
}

void ScreenshotWatcher::scheduleScan()
{
    m_pendingScan = m_scheduler.after(scanDelay, [this] { scan(); });
}

void ScreenshotWatcher::scan()
{
    const auto found = std::make_shared<QStringList>();
    const auto unfinished = m_source ? m_source->unfinished() : QStringList();
    m_queue->run([found, unfinished, known = m_known, directory = m_directory,
                     &folder = m_folder] { *found = takeNew(directory, unfinished, *known, folder); },
        this,
        [this, found] {
            for (const auto& path : *found)
                m_store.addScreenshot(QUrl::fromLocalFile(path));
        });
}

QStringList ScreenshotWatcher::takeNew(const QString& directory, const QStringList& unfinished,
    QSet<QString>& known, const ScreenshotFolder& folder)
{
    auto present = names(directory);
    if (!present)
        return {};
    present->removeIf([&unfinished](const QString& name) { return unfinished.contains(name); });
    QStringList found;
    for (const auto& name : *present) {
        const QString path = directory + u'/' + name;
        if (!known.contains(name) && ClipboardStore::isImageFile(name) && isScreenshot(folder, path))
            found << path;
    }
    // Names that are gone are forgotten: a file that comes back is a new one.
    known = QSet<QString>(present->begin(), present->end());
    return found;
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
