#include "clipboard/ClipboardStore.h"

#include "clipboard/ClipboardIndex.h"
#include "files/PrivateFiles.h"
#include "clipboard/TextPrefix.h"
#include "platform/Clock.h"
#include "platform/Locations.h"
#include "platform/WorkQueue.h"
#include "preferences/L10n.h"
#include "preferences/Settings.h"

#include <QCryptographicHash>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QSemaphore>
#include <QSet>

#include <algorithm>
#include <utility>

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace nimbarrow {

namespace {

using Kind = ClipboardItem::Kind;

constexpr auto saveDelay = 500ms;
constexpr int longestFlush = 3000; // ms
constexpr qint64 lowestLimit = 10;
constexpr qsizetype maxCharacters = 20'000;
/// In UTF-16 units: hashing a longer text is felt.
constexpr qsizetype maxHashedAtOnce = qsizetype { 256 } * 1024;

// Rows are shown by time, and the user's clock may have been set back since.
QList<ClipboardItem> inDisplayOrder(const QList<ClipboardItem>& items, bool images)
{
    QList<const ClipboardItem*> order;
    order.reserve(items.size());
    for (const auto pinned : { true, false }) {
        for (const auto& item : items) {
            if (item.pinned == pinned && (item.kind == Kind::Image) == images)
                order << &item;
        }
    }
    const auto isBefore = [](const ClipboardItem* one, const ClipboardItem* other) {
        return ClipboardListModel::isBefore(*one, *other);
    };
    if (!std::ranges::is_sorted(order, isBefore))
        std::ranges::stable_sort(order, isBefore);
    QList<ClipboardItem> ordered;
    ordered.reserve(order.size());
    for (const auto* item : std::as_const(order))
        ordered << *item;
    return ordered;
}

QString keyOfText(QStringView text)
{
    return ClipboardStore::hash(text.trimmed().toUtf8());
}

QString imageName(const QUuid& id)
{
    return id.toString(QUuid::WithoutBraces).toUpper() + ".png"_L1;
}

// An image is written before the entry that names it is saved, and the program may end in between.
void removeImagesWithoutEntry(const QString& folder, const QSet<QString>& entries)
{
    for (const auto& file : QDir(folder).entryInfoList(QDir::Files)) {
        if (file.fileName() == imageName(QUuid(file.baseName())) && !entries.contains(file.filePath()))
            QFile::remove(file.filePath());
    }
}

// The same folder may be written with a slash behind it.
QString pathOf(const QUrl& url)
{
    const auto path = url.toLocalFile();
    return path.size() > 1 && path.endsWith(u'/') ? path.chopped(1) : path;
}

} // namespace

ClipboardStore::ClipboardStore(const Settings& settings, const Locations& locations, const Clock& clock,
    Scheduler& scheduler, WorkQueues& queues, QObject* parent)
    : QObject(parent)
    , m_settings(settings)
    , m_clock(clock)
    , m_scheduler(scheduler)
    , m_directory(QDir::cleanPath(locations.applicationSupport() + "/Nimbarrow"_L1))
    , m_imagesDirectory(m_directory + "/images"_L1)
    , m_indexPath(m_directory + "/index.json"_L1)
    , m_io(queues.serial(u"ua.tessak.Nimbarrow.store"_s))
{
    privatefiles::makeFolder(m_directory);
    privatefiles::makeFolder(m_imagesDirectory);
    load();
    connect(&L10n::instance(), &L10n::currentChanged, this, [this] {
        m_textualModel.retranslate();
        m_imageModel.retranslate();
    });
}

ClipboardStore::~ClipboardStore()
{
    if (m_saveTimer.isSet())
        save();
}

void ClipboardStore::load()
{
    const auto json = privatefiles::read(m_indexPath, clipboardindex::maxSize);
    const auto items = json ? clipboardindex::decode(*json) : std::nullopt;
    m_items = items.value_or(QList<ClipboardItem>());
    m_items.removeIf([](const auto& item) { return item.imagePath && !QFileInfo::exists(*item.imagePath); });
    for (const auto& item : std::as_const(m_items))
        remember(item);
    publish();
    tidy(items || !QFileInfo::exists(m_indexPath));
}

void ClipboardStore::tidy(bool indexIsKnown)
{
    QSet<QString> images;
    for (const auto& item : std::as_const(m_items)) {
        if (item.imagePath)
            images << QDir::cleanPath(*item.imagePath);
    }
    m_io->run([folder = m_directory, imagesFolder = m_imagesDirectory, images, indexIsKnown] {
        privatefiles::tidyFolder(folder);
        privatefiles::tidyFolder(imagesFolder);
        // An index that cannot be read may still name them.
        if (indexIsKnown)
            removeImagesWithoutEntry(imagesFolder, images);
    });
}

const ClipboardItem* ClipboardStore::find(const QUuid& id) const
{
    const auto item = std::ranges::find(m_items, id, &ClipboardItem::id);
    return item == m_items.end() ? nullptr : &*item;
}

QUrl ClipboardStore::imageUrl(const QUuid& id) const
{
    const auto* const item = find(id);
    return item && item->imagePath ? QUrl::fromLocalFile(*item->imagePath) : QUrl();
}

void ClipboardStore::addText(const QString& text, const std::optional<QString>& sourceApp)
{
    if (QStringView(text).trimmed().isEmpty())
        return;
    if (text.size() <= maxHashedAtOnce) {
        insertText(text, keyOfText(text), sourceApp);
        return;
    }
    const auto key = std::make_shared<QString>();
    m_io->run([key, text] { *key = keyOfText(text); }, this,
        [this, key, text, sourceApp] { insertText(text, *key, sourceApp); });
}

void ClipboardStore::insertText(
    const QString& text, const QString& key, const std::optional<QString>& sourceApp)
{
    if (promoteExisting(key))
        return;
    const auto trimmed = QStringView(text).trimmed();
    const auto link = trimmed.size() <= maxStoredLength && isLink(trimmed.toString());
    auto item = makeItem(link ? Kind::Link : Kind::Text, key, sourceApp);
    item.text = link ? trimmed.toString() : firstCharacters(text, maxCharacters);
    insert(item);
}

void ClipboardStore::addFiles(const QList<QUrl>& urls, const std::optional<QString>& sourceApp)
{
    if (urls.isEmpty())
        return;
    QStringList paths;
    for (const auto& url : urls)
        paths << pathOf(url);
    const auto isImage = paths.size() == 1 && isImageFile(paths.first());
    auto item = makeItem(isImage ? Kind::Image : Kind::Files, hash(paths.join(u'\n').toUtf8()), sourceApp);
    if (isImage)
        item.imagePath = paths.first();
    else
        item.filePaths = paths;
    promoteOrInsert(item);
}

void ClipboardStore::addImage(const QByteArray& pngData, const std::optional<QString>& sourceApp)
{
    const auto key = std::make_shared<QString>();
    m_io->run([key, pngData] { *key = hash(pngData); }, this,
        [this, key, pngData, sourceApp] { storeImage(pngData, *key, sourceApp); });
}

void ClipboardStore::storeImage(
    const QByteArray& pngData, const QString& key, const std::optional<QString>& sourceApp)
{
    if (promoteExisting(key))
        return;
    const QString path = m_imagesDirectory + u'/' + imageName(QUuid::createUuid());
    const auto written = std::make_shared<bool>(false);
    m_io->run([written, path, pngData] { *written = privatefiles::write(path, pngData); }, this,
        [this, written, path, key, sourceApp] {
            if (!*written)
                return;
            auto item = makeItem(Kind::Image, key, sourceApp);
            item.imagePath = path;
            // The same image may have come in while this one was being written.
            if (promoteExisting(key))
                dropImages({ item });
            else
                insert(item);
        });
}

void ClipboardStore::addScreenshot(const QUrl& url)
{
    const auto path = pathOf(url);
    // Kept as it is called now: it names the source of the entry like a program's name.
    auto item = makeItem(Kind::Image, "file:"_L1 + path, L10n::text(L10n::Key::KindScreenshot));
    item.imagePath = path;
    item.isScreenshot = true;
    promoteOrInsert(item);
}

void ClipboardStore::togglePin(const QUuid& id)
{
    const auto item = std::ranges::find(m_items, id, &ClipboardItem::id);
    if (item == m_items.end())
        return;
    item->pinned = !item->pinned;
    publish();
    scheduleSave();
}

void ClipboardStore::remove(const QUuid& id)
{
    QList<ClipboardItem> removed;
    std::ranges::copy_if(
        m_items, std::back_inserter(removed), [&id](const auto& item) { return item.id == id; });
    if (removed.isEmpty())
        return;
    m_items.removeIf([&id](const auto& item) { return item.id == id; });
    publish();
    letGo(removed);
    scheduleSave();
}

void ClipboardStore::clear()
{
    QList<ClipboardItem> removed;
    std::ranges::copy_if(m_items, std::back_inserter(removed), [](const auto& item) { return !item.pinned; });
    m_items.removeIf([](const auto& item) { return !item.pinned; });
    publish();
    letGo(removed);
    scheduleSave();
}

void ClipboardStore::enforceLimit()
{
    const auto overflow = takeOverflow();
    if (overflow.isEmpty())
        return;
    publish();
    letGo(overflow);
    // What the user no longer wants to keep is not to stay on disk until the next copy.
    scheduleSave();
}

void ClipboardStore::flush()
{
    if (m_saveTimer.isSet())
        save();
    const auto done = std::make_shared<QSemaphore>();
    m_io->run([done] { done->release(); });
    done->tryAcquire(1, longestFlush);
}

ClipboardItem ClipboardStore::makeItem(
    Kind kind, const QString& key, const std::optional<QString>& sourceApp) const
{
    ClipboardItem item;
    item.id = QUuid::createUuid();
    item.kind = kind;
    item.createdAt = m_clock.wallTime();
    item.sourceApp = sourceApp;
    item.contentHash = key;
    return item;
}

void ClipboardStore::remember(const ClipboardItem& item)
{
    if (item.contentHash)
        m_capturesByHash.insert(*item.contentHash, { item.id, item.createdAt });
}

QList<ClipboardItem>::iterator ClipboardStore::findCaptured(const QString& key)
{
    const auto known = m_capturesByHash.count(key);
    if (known == 0)
        return m_items.end();
    // Of several, which only an index from elsewhere can have, the one that stands first.
    if (known > 1)
        return std::ranges::find(m_items, key, &ClipboardItem::contentHash);
    // The newest stand first, unless the clock was set back.
    const auto capture = m_capturesByHash.value(key);
    auto item = std::ranges::partition_point(
        m_items, [&capture](const ClipboardItem& other) { return other.createdAt > capture.at; });
    while (item != m_items.end() && item->id != capture.id && item->createdAt == capture.at)
        ++item;
    return item != m_items.end() && item->id == capture.id
        ? item
        : std::ranges::find(m_items, capture.id, &ClipboardItem::id);
}

bool ClipboardStore::promoteExisting(const QString& key)
{
    const auto found = findCaptured(key);
    if (found == m_items.end())
        return false;
    const auto before = m_items.takeAt(found - m_items.begin());
    m_capturesByHash.remove(key, { before.id, before.createdAt });
    m_items.prepend(before);
    auto& item = m_items.first();
    item.createdAt = m_clock.wallTime();
    remember(item);
    show(item, &before);
    scheduleSave();
    return true;
}

void ClipboardStore::insert(const ClipboardItem& item)
{
    m_items.prepend(item);
    remember(item);
    if (const auto overflow = takeOverflow(); overflow.isEmpty()) {
        show(item, nullptr);
    } else {
        publish();
        letGo(overflow);
    }
    scheduleSave();
    if (onNewItem)
        onNewItem(item);
}

void ClipboardStore::promoteOrInsert(const ClipboardItem& item)
{
    if (!promoteExisting(*item.contentHash))
        insert(item);
}

QList<ClipboardItem> ClipboardStore::takeOverflow()
{
    auto room = std::max(m_settings.historyLimit(), lowestLimit);
    QList<ClipboardItem> overflow;
    if (m_items.size() <= room)
        return overflow;
    m_items.removeIf([&room, &overflow](const auto& item) {
        if (item.pinned || room-- > 0)
            return false;
        overflow << item;
        return true;
    });
    return overflow;
}

void ClipboardStore::letGo(const QList<ClipboardItem>& removed)
{
    for (const auto& item : removed) {
        if (item.contentHash)
            m_capturesByHash.remove(*item.contentHash, { item.id, item.createdAt });
    }
    dropImages(removed);
}

void ClipboardStore::dropImages(const QList<ClipboardItem>& removed)
{
    QStringList paths;
    for (const auto& item : removed) {
        if (item.imagePath)
            paths << QDir::cleanPath(*item.imagePath);
    }
    if (paths.isEmpty())
        return;
    // An image dragged from the history back into it is two entries with one file.
    for (const auto& item : std::as_const(m_items)) {
        if (item.imagePath)
            paths.removeAll(QDir::cleanPath(*item.imagePath));
    }
    QList<QUrl> files;
    for (const auto& path : std::as_const(paths))
        files << QUrl::fromLocalFile(path);
    Q_EMIT imagesDropped(files);
    paths.removeIf([this](const auto& path) { return !path.startsWith(m_imagesDirectory + u'/'); });
    m_io->run([paths] {
        for (const auto& path : paths)
            QFile::remove(path);
    });
}

void ClipboardStore::show(const ClipboardItem& item, const ClipboardItem* before)
{
    (item.kind == Kind::Image ? m_imageModel : m_textualModel).put(item, before);
    Q_EMIT itemsChanged();
}

void ClipboardStore::publish()
{
    m_textualModel.setItems(inDisplayOrder(m_items, false));
    m_imageModel.setItems(inDisplayOrder(m_items, true));
    Q_EMIT itemsChanged();
}

void ClipboardStore::scheduleSave()
{
    m_saveTimer = m_scheduler.after(saveDelay, [this] { save(); });
}

void ClipboardStore::save()
{
    m_saveTimer.cancel();
    // This thread lets go of the list last: a list that seems to be shared with nobody is changed in place,
    // and only the answer tells that the other thread has read it.
    m_io->run(
        [items = m_items, path = m_indexPath] {
            // A full disk leaves the old index; the next change tries again.
            std::ignore = privatefiles::write(path, clipboardindex::encode(items));
        },
        this, [items = m_items] {});
}

bool ClipboardStore::isLink(const QString& text)
{
    if (!text.startsWith("http://"_L1) && !text.startsWith("https://"_L1))
        return false;
    if (std::ranges::any_of(text, [](QChar character) { return character.isSpace(); }))
        return false;
    const QUrl url(text);
    return url.isValid() && !url.host().isEmpty();
}

QString ClipboardStore::hash(const QByteArray& data)
{
    return QString::fromLatin1(QCryptographicHash::hash(data, QCryptographicHash::Sha256).toHex());
}

bool ClipboardStore::isImageFile(const QString& path)
{
    static const QSet<QString> extensions { u"png"_s, u"jpg"_s, u"jpeg"_s, u"heic"_s, u"gif"_s, u"tiff"_s,
        u"tif"_s, u"webp"_s, u"bmp"_s };
    const QFileInfo file(path);
    // ".png" is a hidden file without an extension.
    return !file.completeBaseName().isEmpty() && extensions.contains(file.suffix().toLower());
}

} // namespace nimbarrow
