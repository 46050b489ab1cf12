#include "clipboard/ClipboardStore.h"

#include "clipboard/ClipboardIndex.h"
#include "clipboard/SamePicture.h"
#include "clipboard/TextPrefix.h"
#include "files/PrivateFiles.h"
#include "platform/Locations.h"
#include "preferences/L10n.h"
#include "preferences/Settings.h"

#include <QCryptographicHash>
#include <QDir>
#include <QFileInfo>
#include <QSet>

#include <algorithm>
#include <utility>

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace nimbarrow {

namespace {

using Kind = ClipboardItem::Kind;

constexpr qint64 lowestLimit = 10;
constexpr qsizetype maxCharacters = 20'000;
/// Some programs have no other name than the title of their window.
constexpr qsizetype maxCharactersOfName = 200;
constexpr qsizetype maxFiles = 10'000;
constexpr qsizetype maxBytesOfPaths = qsizetype { 4 } * 1024 * 1024;
/// In UTF-16 units: hashing a longer text is felt.
constexpr qsizetype maxHashedAtOnce = qsizetype { 256 } * 1024;
/// A screenshot tool copies the picture and saves it, or the other way round; encoding it takes seconds.
constexpr auto sameActionTime = 10s;

QString keyOfText(QStringView text)
{
    return ClipboardStore::hash(text.trimmed().toUtf8());
}

} // namespace

ClipboardStore::ClipboardStore(const Settings& settings, const Locations& locations, const Clock& clock,
    Scheduler& scheduler, WorkQueues& queues, QObject* parent)
    : QObject(parent)
    , m_settings(settings)
    , m_clock(clock)
    , m_files(
          locations.applicationSupport() + "/Nimbarrow"_L1, [this] { return items(); }, scheduler, queues)
{
    m_history = ClipboardHistory(m_files.load());
    publish();
    connect(&m_files, &HistoryFiles::stateChanged, this, &ClipboardStore::noticeChanged);
    connect(&L10n::instance(), &L10n::currentChanged, this, [this] {
        m_textualModel.retranslate();
        m_imageModel.retranslate();
        Q_EMIT noticeChanged();
    });
}

ClipboardStore::~ClipboardStore() = default;

QString ClipboardStore::notice() const
{
    if (!m_seesCopies)
        return L10n::text(L10n::Key::CopiesNotReadable);
    switch (m_files.state()) {
    case HistoryFiles::State::Good: break;
    case HistoryFiles::State::NotSaved: return L10n::text(L10n::Key::HistoryNotSaved);
    case HistoryFiles::State::OldIndexKept: return L10n::text(L10n::Key::OldHistoryKept);
    }
    return {};
}

void ClipboardStore::setSeesCopies(bool seesCopies)
{
    if (seesCopies == m_seesCopies)
        return;
    m_seesCopies = seesCopies;
    Q_EMIT noticeChanged();
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
    m_files.run([key, text] { *key = keyOfText(text); }, this,
        [this, key, text, sourceApp] { insertText(text, *key, sourceApp); });
}

void ClipboardStore::insertText(
    const QString& text, const QString& key, const std::optional<QString>& sourceApp)
{
    if (promote(key))
        return;
    const auto trimmed = QStringView(text).trimmed();
    const auto link = trimmed.size() <= maxStoredLength && isLink(trimmed.toString());
    auto item = makeItem(link ? Kind::Link : Kind::Text, key, sourceApp);
    item.text = link ? trimmed.toString() : firstCharacters(text, maxCharacters);
    insert(item);
}

void ClipboardStore::addFiles(const QList<QUrl>& urls, const std::optional<QString>& sourceApp)
{
    if (urls.isEmpty() || urls.size() > maxFiles)
        return;
    QStringList paths;
    for (const auto& url : urls)
        paths << storedFile(url);
    const auto joined = paths.join(u'\n').toUtf8();
    if (joined.size() > maxBytesOfPaths)
        return;
    const auto isImage = paths.size() == 1 && isImageFile(paths.first()) && paths.first().startsWith(u'/');
    if (const auto own = isImage ? m_files.ownImageName(paths.first()) : QString(); !own.isEmpty()) {
        const auto entry = std::ranges::find_if(items(),
            [&own](const auto& item) { return item.imagePath && item.imagePath->endsWith(u'/' + own); });
        // Without an entry it is the file of one that is gone, and goes too; or it is in a copy of the
        // folder.
        if (entry == items().end() && paths.first().startsWith(m_files.imagesFolder() + u'/'))
            return;
        if (entry != items().end()) {
            promote(QUuid(entry->id));
            return;
        }
    }
    auto item = makeItem(isImage ? Kind::Image : Kind::Files, hash(joined), sourceApp);
    if (isImage)
        item.imagePath = paths.first();
    else
        item.filePaths = paths;
    promoteOrInsert(item);
}

void ClipboardStore::addImage(const QByteArray& pngData, const std::optional<QString>& sourceApp)
{
    ++m_imagesUnderWay;
    const auto key = std::make_shared<QString>();
    m_files.run([key, pngData] { *key = hash(pngData); }, this,
        [this, key, pngData, sourceApp] { storeImage(pngData, *key, sourceApp); });
}

void ClipboardStore::storeImage(
    const QByteArray& pngData, const QString& key, const std::optional<QString>& sourceApp)
{
    if (promote(key)) {
        --m_imagesUnderWay;
        return;
    }
    struct Result {
        std::optional<QUuid> screenshot;
        bool isWritten = false;
    };
    const auto result = std::make_shared<Result>();
    const auto path = m_files.newImagePath();
    m_files.run(
        [result, path, pngData, screenshots = recentImages(true)] {
            for (const auto& screenshot : screenshots) {
                if (!samePicture(pngData, screenshot.path))
                    continue;
                result->screenshot = screenshot.id;
                return;
            }
            result->isWritten = HistoryFiles::writeImage(path, pngData);
        },
        this,
        [this, result, path, key, sourceApp] {
            --m_imagesUnderWay;
            if (result->screenshot && promote(*result->screenshot))
                return;
            m_files.noteImage(result->isWritten || result->screenshot);
            if (!result->isWritten)
                return;
            auto item = makeItem(Kind::Image, key, sourceApp);
            item.imagePath = path;
            // The same image may have come in while this one was being written.
            if (promote(key))
                dropImages({ item });
            else
                insert(item);
        });
}

void ClipboardStore::addScreenshot(const QUrl& url)
{
    const auto path = storedFile(url);
    // Kept as it is called now: it names the source of the entry like a program's name.
    auto item = makeItem(Kind::Image, "file:"_L1 + path, L10n::text(L10n::Key::KindScreenshot));
    item.imagePath = path;
    item.isScreenshot = true;
    insertScreenshot(item);
}

void ClipboardStore::insertScreenshot(const ClipboardItem& item)
{
    if (m_imagesUnderWay > 0) {
        // One of them may be this picture. Each step of theirs comes before this one.
        m_files.run([] {}, this, [this, item] { insertScreenshot(item); });
        return;
    }
    const auto copies = recentImages(false);
    if (copies.isEmpty()) {
        promoteOrInsert(item);
        return;
    }
    const auto same = std::make_shared<QUuid>();
    m_files.run(
        [same, copies, path = *item.imagePath] {
            const auto found = std::ranges::find_if(copies,
                [&path](const auto& copy) { return copy.path == path || samePicture(copy.path, path); });
            if (found != copies.end())
                *same = found->id;
        },
        this,
        [this, same, item] {
            const auto* const copied = find(*same);
            if (copied)
                becomeScreenshot(ClipboardItem(*copied), item);
            else
                promoteOrInsert(item);
        });
}

void ClipboardStore::becomeScreenshot(const ClipboardItem& copied, ClipboardItem screenshot)
{
    if (promote(*screenshot.contentHash))
        return;
    screenshot.id = copied.id;
    screenshot.createdAt = copied.createdAt;
    screenshot.pinned = copied.pinned;
    m_history.replace(screenshot);
    publish();
    dropImages({ copied });
    m_files.saveSoon();
}

void ClipboardStore::noteRecentImage(const ClipboardItem& item)
{
    const auto now = m_clock.now();
    m_recentImages.removeIf([now](const auto& image) { return now - image.at > sameActionTime; });
    if (item.kind == Kind::Image)
        m_recentImages << RecentImage { item.id, now };
}

QList<ClipboardStore::ImageFile> ClipboardStore::recentImages(bool screenshots) const
{
    QList<ImageFile> files;
    for (const auto& image : m_recentImages) {
        const auto* const item = m_clock.now() - image.at <= sameActionTime ? find(image.id) : nullptr;
        if (item && item->imagePath && item->isScreenshot == screenshots)
            files << ImageFile { item->id, *item->imagePath };
    }
    return files;
}

void ClipboardStore::togglePin(const QUuid& id)
{
    if (!m_history.togglePin(id))
        return;
    publish();
    m_files.saveSoon();
}

void ClipboardStore::remove(const QUuid& id)
{
    finishRemoval(m_history.remove(id));
}

void ClipboardStore::clear()
{
    finishRemoval(m_history.removeUnpinned());
}

void ClipboardStore::enforceLimit()
{
    finishRemoval(m_history.removeOverflow(std::max(m_settings.historyLimit(), lowestLimit)));
}

void ClipboardStore::finishRemoval(const QList<ClipboardItem>& removed)
{
    if (removed.isEmpty())
        return;
    publish();
    dropImages(removed);
    // What the user no longer wants to keep is not to stay on disk, whatever happens next.
    m_files.saveNow();
}

void ClipboardStore::flush()
{
    m_files.flush();
}

ClipboardItem ClipboardStore::makeItem(
    Kind kind, const QString& key, const std::optional<QString>& sourceApp) const
{
    ClipboardItem item;
    item.id = QUuid::createUuid();
    item.kind = kind;
    item.createdAt = m_clock.wallTime();
    if (sourceApp)
        item.sourceApp = firstCharacters(*sourceApp, maxCharactersOfName);
    item.contentHash = key;
    return item;
}

template <typename Key>
bool ClipboardStore::promote(const Key& key)
{
    const auto before = m_history.promote(key, m_clock.wallTime());
    if (!before)
        return false;
    noteRecentImage(*before);
    show(items().first(), &*before);
    m_files.saveSoon();
    return true;
}

void ClipboardStore::insert(const ClipboardItem& item)
{
    m_history.add(item);
    noteRecentImage(item);
    const auto overflow = m_history.removeOverflow(std::max(m_settings.historyLimit(), lowestLimit));
    if (overflow.isEmpty()) {
        show(item, nullptr);
    } else {
        publish();
        dropImages(overflow);
    }
    m_files.saveSoon();
    if (onNewItem && find(item.id))
        onNewItem(item);
}

void ClipboardStore::promoteOrInsert(const ClipboardItem& item)
{
    if (!promote(*item.contentHash))
        insert(item);
}

void ClipboardStore::dropImages(const QList<ClipboardItem>& removed)
{
    QStringList paths;
    for (const auto& item : removed) {
        if (item.imagePath)
            paths << QDir::cleanPath(*item.imagePath);
        // Copied out of the history's folder, together with others.
        for (const auto& path : item.filePaths.value_or(QStringList())) {
            if (!m_files.ownImageName(path).isEmpty())
                paths << QDir::cleanPath(path);
        }
    }
    if (paths.isEmpty())
        return;
    // An image dragged from the history back into it was two entries with one file.
    for (const auto& item : items()) {
        if (item.imagePath)
            paths.removeAll(QDir::cleanPath(*item.imagePath));
    }
    QList<QUrl> files;
    for (const auto& path : std::as_const(paths))
        files << QUrl::fromLocalFile(path);
    Q_EMIT imagesDropped(files);
    m_files.removeWithNextSave(paths, items());
}

void ClipboardStore::show(const ClipboardItem& item, const ClipboardItem* before)
{
    (item.kind == Kind::Image ? m_imageModel : m_textualModel).put(item, before);
    Q_EMIT itemsChanged();
}

void ClipboardStore::publish()
{
    m_textualModel.setItems(m_history.displayed(false));
    m_imageModel.setItems(m_history.displayed(true));
    Q_EMIT itemsChanged();
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
