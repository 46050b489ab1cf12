#include "linux/applications/DesktopEntries.h"

#include "files/PrivateFiles.h"

#include <QDir>
#include <QDirIterator>
#include <QFileInfo>
#include <QLocale>
#include <QStandardPaths>

using namespace Qt::StringLiterals;

namespace nimbarrow {
namespace {

constexpr qsizetype largestEntry = 262'144;
constexpr auto mostEntries = 10'000;
// Only the very first question can come before anything is read.
constexpr auto firstAnswerMilliseconds = 100;

QString applicationsOf(const QString& dataFolder)
{
    return dataFolder + "/applications"_L1;
}

} // namespace

struct DesktopEntries::Index {
    QHash<QString, DesktopEntry> byId;
    QHash<QString, QString> idByClass;
    QHash<QString, QString> idByLowerId;
    QHash<QString, QString> idByLastPart;
    QHash<QString, QDateTime> folderTimes;

    [[nodiscard]] bool isStale() const
    {
        for (auto folder = folderTimes.cbegin(); folder != folderTimes.cend(); ++folder) {
            if (QFileInfo(folder.key()).lastModified() != folder.value())
                return true;
        }
        return false;
    }

    void addFolder(const QString& folder, const QString& locale)
    {
        note(folder);
        QDirIterator files(
            folder, QDir::Files | QDir::Dirs | QDir::NoDotAndDotDot, QDirIterator::Subdirectories);
        while (files.hasNext() && byId.size() < mostEntries) {
            const QFileInfo info(files.next());
            if (info.isDir())
                note(info.filePath());
            else if (info.suffix() == "desktop"_L1)
                addFile(info.filePath(), folder, locale);
        }
    }

private:
    void note(const QString& folder) { folderTimes.insert(folder, QFileInfo(folder).lastModified()); }

    void addFile(const QString& path, const QString& folder, const QString& locale)
    {
        auto id = path.mid(folder.size() + 1).chopped(8);
        id.replace(u'/', u'-');
        // The user's own files come first and stand before the system's of the same name.
        if (byId.contains(id))
            return;
        const auto text = privatefiles::read(path, largestEntry);
        const auto entry = text ? DesktopEntry::parse(id, *text, locale) : std::nullopt;
        if (!entry)
            return;
        byId.insert(id, *entry);
        if (entry->isHidden)
            return;
        const auto addFirst = [&id](QHash<QString, QString>& ids, const QString& key) {
            if (!key.isEmpty() && !ids.contains(key))
                ids.insert(key, id);
        };
        const auto lower = id.toLower();
        addFirst(idByClass, entry->startupWmClass.toLower());
        addFirst(idByLowerId, lower);
        addFirst(idByLastPart, lower.section(u'.', -1));
    }
};

DesktopEntries::DesktopEntries()
    : DesktopEntries(
        QStandardPaths::standardLocations(QStandardPaths::GenericDataLocation), QLocale::system().name())
{
}

DesktopEntries::DesktopEntries(QStringList dataFolders, QString locale)
    : m_folders(std::move(dataFolders))
    , m_locale(std::move(locale))
{
    m_reader.setMaxThreadCount(1);
    read();
}

DesktopEntries::~DesktopEntries()
{
    m_reader.waitForDone();
}

std::optional<DesktopEntry> DesktopEntries::byId(const QString& id) const
{
    const auto index = current();
    const auto entry = index->byId.constFind(id.endsWith(".desktop"_L1) ? id.chopped(8) : id);
    if (entry == index->byId.cend() || entry->isHidden)
        return {};
    return *entry;
}

std::optional<DesktopEntry> DesktopEntries::byWindowClass(const QString& windowClass) const
{
    const auto index = current();
    const auto key = windowClass.toLower();
    for (const auto* ids : { &index->idByClass, &index->idByLowerId, &index->idByLastPart }) {
        if (const auto id = ids->constFind(key); id != ids->cend())
            return index->byId.value(*id);
    }
    return {};
}

std::shared_ptr<const DesktopEntries::Index> DesktopEntries::current() const
{
    std::unique_lock lock(m_mutex);
    if (!m_index) {
        lock.unlock();
        m_reader.waitForDone(firstAnswerMilliseconds);
        lock.lock();
    }
    auto index = m_index;
    const auto isReading = m_isReading;
    lock.unlock();
    if (!index)
        return std::make_shared<const Index>();
    if (!isReading && index->isStale())
        read();
    return index;
}

void DesktopEntries::read() const
{
    {
        const std::scoped_lock lock(m_mutex);
        m_isReading = true;
    }
    m_reader.start([this] {
        auto index = std::make_shared<Index>();
        for (const auto& folder : m_folders)
            index->addFolder(applicationsOf(folder), m_locale);
        const std::scoped_lock lock(m_mutex);
        m_index = std::move(index);
        m_isReading = false;
    });
}

} // namespace nimbarrow
