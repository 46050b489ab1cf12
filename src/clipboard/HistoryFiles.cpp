#include "clipboard/HistoryFiles.h"

#include "clipboard/ClipboardIndex.h"
#include "files/PrivateFiles.h"
#include "platform/WorkQueue.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QLoggingCategory>

#include <algorithm>
#include <cstdio>
#include <utility>

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace nimbarrow {

Q_LOGGING_CATEGORY(logHistory, "ua.tessak.Nimbarrow.clipboard")

namespace {

constexpr auto saveDelay = 500ms;
constexpr auto retryDelay = 10s;
constexpr auto patienceAtTheEnd = 2s;

QString imageName(const QUuid& id)
{
    return id.toString(QUuid::WithoutBraces).toUpper() + ".png"_L1;
}

bool isImageName(const QString& name)
{
    return name.endsWith(".png"_L1) && name == imageName(QUuid::fromString(name.chopped(4)));
}

bool isThere(const QString& path)
{
    const QFileInfo file(path);
    return file.exists() || file.isSymLink();
}

/// What stands for a file of the history under whichever name of its folder; for any other file, its path.
QString identity(const QString& path)
{
    const auto name = QFileInfo(path).fileName();
    return isImageName(name) ? name : QDir::cleanPath(path);
}

QSet<QString> namedFiles(const QList<ClipboardItem>& entries)
{
    QSet<QString> files;
    for (const auto& entry : entries) {
        if (entry.imagePath)
            files << identity(*entry.imagePath);
        for (const auto& path : entry.filePaths.value_or(QStringList()))
            files << identity(path);
    }
    return files;
}

// An image is written before the entry that names it is saved, and the program may end in between.
void removeImagesWithoutEntry(const QString& folder, const QSet<QString>& named)
{
    for (const auto& file : QDir(folder).entryInfoList(QDir::Files)) {
        if (isImageName(file.fileName()) && !named.contains(file.fileName()))
            std::ignore = privatefiles::remove(file.filePath());
    }
}

bool hasKeptIndex(const QString& folder)
{
    // A filter of names would be a regular expression, whose library takes half a megabyte.
    const auto names = QDir(folder).entryList(QDir::AllEntries | QDir::Hidden | QDir::System);
    return std::ranges::any_of(names, [](const QString& name) {
        return name.startsWith("index.unreadable"_L1) && name.endsWith(".json"_L1);
    });
}

/// False when there is no way to.
bool keepAside(const QString& index)
{
    const auto folder = QFileInfo(index).path();
    if (!privatefiles::makeFolder(folder))
        return false;
    for (auto number = 1; number < 1000; ++number) {
        const QString path = folder + "/index.unreadable"_L1
            + (number == 1 ? QString() : u'-' + QString::number(number)) + ".json"_L1;
        if (!isThere(path))
            return std::rename(QFile::encodeName(index).constData(), QFile::encodeName(path).constData())
                == 0;
    }
    return false;
}

bool writeIndex(const QString& path, const QList<ClipboardItem>& entries)
{
    const auto json = clipboardindex::encode(entries);
    // There was no room for the folder when the program started, or somebody has removed it since.
    return json.size() <= clipboardindex::maxSize && privatefiles::makeFolder(QFileInfo(path).path())
        && privatefiles::write(path, json);
}

} // namespace

/// Made and read on the main thread; in between the queue's thread has it.
struct HistoryFiles::Save {
    QList<ClipboardItem> entries;
    QSet<QString> unwanted;
    bool isWritten = false;
    bool canKeepImages = false;
};

HistoryFiles::HistoryFiles(const QString& folder, Snapshot snapshot, Scheduler& scheduler, WorkQueues& queues)
    : m_folder(QDir::cleanPath(folder))
    , m_imagesFolder(m_folder + "/images"_L1)
    , m_indexPath(m_folder + "/index.json"_L1)
    , m_snapshot(std::move(snapshot))
    , m_scheduler(scheduler)
    , m_queue(queues.serial(u"ua.tessak.Nimbarrow.store"_s))
{
}

HistoryFiles::~HistoryFiles()
{
    if (m_timer.isSet() || m_saveAgain) {
        m_isSaving = false;
        saveNow();
    }
}

QList<ClipboardItem> HistoryFiles::load()
{
    m_indexFails = !privatefiles::makeFolder(m_folder);
    m_imagesFail = m_indexFails || !privatefiles::makeFolder(m_imagesFolder);
    const auto json = privatefiles::read(m_indexPath, clipboardindex::maxSize);
    auto entries = json ? clipboardindex::decode(*json) : std::nullopt;
    if (!entries && isThere(m_indexPath)) {
        *m_isUnreadable = true;
        m_keptOldIndex = true;
        qCWarning(logHistory, "The index of the history cannot be read and is kept aside in %ls",
            qUtf16Printable(m_folder));
    }
    auto items = entries.value_or(QList<ClipboardItem>());
    tidy(items);
    for (auto& item : items) {
        if (item.imagePath)
            item.imagePath = currentPath(*item.imagePath);
    }
    items.removeIf([](const auto& item) { return item.imagePath && !QFileInfo::exists(*item.imagePath); });
    updateState();
    return items;
}

void HistoryFiles::tidy(const QList<ClipboardItem>& entries)
{
    m_queue->run([folder = m_folder, imagesFolder = m_imagesFolder, named = namedFiles(entries),
                     isUnreadable = m_isUnreadable] {
        privatefiles::tidyFolder(folder);
        // An index that cannot be read may still name what no entry names.
        const auto isKnown = !*isUnreadable && !hasKeptIndex(folder);
        if (privatefiles::tidyFolder(imagesFolder) && isKnown)
            removeImagesWithoutEntry(imagesFolder, named);
    });
}

// A home may have been moved, renamed or put behind a link since the index was written.
QString HistoryFiles::currentPath(const QString& imagePath) const
{
    const auto name = QFileInfo(imagePath).fileName();
    const QString own = m_imagesFolder + u'/' + name;
    if (imagePath == own || !isImageName(name) || !QFileInfo::exists(own))
        return imagePath;
    return !ownImageName(imagePath).isEmpty() || !QFileInfo::exists(imagePath) ? own : imagePath;
}

QString HistoryFiles::ownImageName(const QString& path) const
{
    const auto name = QFileInfo(path).fileName();
    if (!isImageName(name))
        return {};
    const QString own = m_imagesFolder + u'/' + name;
    const auto isOwn = path == own || QDir::cleanPath(path).endsWith("/Nimbarrow/images/"_L1 + name)
        || (QFileInfo::exists(own)
            && QFileInfo(path).canonicalFilePath() == QFileInfo(own).canonicalFilePath());
    return isOwn ? name : QString();
}

void HistoryFiles::saveSoon()
{
    m_timer = m_scheduler.after(saveDelay, [this] { saveNow(); });
}

void HistoryFiles::saveNow()
{
    m_timer.cancel();
    m_saveAgain = m_isSaving;
    if (m_isSaving)
        return;
    m_isSaving = true;
    // This thread lets go of it last: what seems to be shared with nobody is changed in place, and only the
    // answer tells that the other thread has read it.
    const auto save = std::make_shared<Save>(Save { m_snapshot(), std::exchange(m_unwanted, {}) });
    m_queue->run(
        [save, index = m_indexPath, images = m_imagesFolder, isUnreadable = m_isUnreadable] {
            if (*isUnreadable && (!isThere(index) || keepAside(index)))
                *isUnreadable = false;
            save->isWritten = !*isUnreadable && writeIndex(index, save->entries);
            save->canKeepImages = save->isWritten && privatefiles::makeFolder(images);
            save->unwanted.removeIf([](const QString& path) { return privatefiles::remove(path); });
        },
        this, [this, save] { finishSave(*save); });
}

void HistoryFiles::finishSave(const Save& save)
{
    m_isSaving = false;
    m_unwanted += save.unwanted;
    m_indexFails = !save.isWritten || !save.unwanted.isEmpty();
    m_imagesFail = !save.canKeepImages;
    if (m_saveAgain)
        saveNow();
    else if (m_indexFails && !m_timer.isSet())
        m_timer = m_scheduler.after(retryDelay, [this] { saveNow(); });
    updateState();
}

void HistoryFiles::flush()
{
    // What was under way may bring another entry; a disk that refuses is not asked for ever.
    for (auto round = 0; round < 3; ++round) {
        if (m_timer.isSet())
            saveNow();
        if (!m_queue->finish(patienceAtTheEnd) || !m_timer.isSet())
            return;
    }
}

bool HistoryFiles::writeImage(const QString& path, const QByteArray& pngData)
{
    const auto images = QFileInfo(path).path();
    return privatefiles::makeFolder(QFileInfo(images).path()) && privatefiles::makeFolder(images)
        && privatefiles::write(path, pngData);
}

void HistoryFiles::noteImage(bool isWritten)
{
    m_imagesFail = !isWritten;
    updateState();
}

void HistoryFiles::updateState()
{
    const auto state = m_indexFails || m_imagesFail ? State::NotSaved
        : m_keptOldIndex                            ? State::OldIndexKept
                                                    : State::Good;
    if (state == m_state)
        return;
    m_state = state;
    if (state == State::NotSaved)
        qCWarning(logHistory, "The history cannot be saved in %ls", qUtf16Printable(m_folder));
    Q_EMIT stateChanged();
}

QString HistoryFiles::newImagePath() const
{
    return m_imagesFolder + u'/' + imageName(QUuid::createUuid());
}

void HistoryFiles::removeWithNextSave(const QStringList& paths, const QList<ClipboardItem>& entries)
{
    QStringList own;
    for (const auto& path : paths) {
        const auto file = QDir::cleanPath(path);
        if (file.startsWith(m_imagesFolder + u'/'))
            own << file;
    }
    const auto named = own.isEmpty() ? QSet<QString>() : namedFiles(entries);
    for (const auto& file : std::as_const(own)) {
        if (!named.contains(identity(file)))
            m_unwanted << file;
    }
}

void HistoryFiles::run(Work work, QObject* receiver, Work done)
{
    m_queue->run(std::move(work), receiver, std::move(done));
}

} // namespace nimbarrow
