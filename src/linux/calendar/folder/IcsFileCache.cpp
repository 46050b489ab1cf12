#include "linux/calendar/folder/IcsFileCache.h"

#include <QDateTime>

namespace nimbarrow {

namespace {

constexpr qsizetype highestCost = 16 * 1024 * 1024;
/// A file that has just been written may be written again without its time showing it.
constexpr qint64 settledAfter = 2000; // ms

qint64 modifiedAt(const QFileInfo& info)
{
    return info.fileTime(QFile::FileModificationTime).toMSecsSinceEpoch();
}

} // namespace

void IcsFileCache::begin(const IcsFile::Reading& reading)
{
    ++m_round;
    if (reading == m_reading)
        return;
    m_reading = reading;
    m_entries.clear();
    m_cost = 0;
}

IcsFileCache::File IcsFileCache::find(const QFileInfo& info)
{
    const auto entry = m_entries.find(info.filePath());
    if (entry == m_entries.end() || entry->size != info.size() || entry->modified != modifiedAt(info))
        return {};
    entry->round = m_round;
    return entry->file;
}

void IcsFileCache::keep(const QFileInfo& info, const File& file)
{
    const auto modified = modifiedAt(info);
    const bool isSettled = QDateTime::currentMSecsSinceEpoch() - modified >= settledAfter;
    if (const auto old = m_entries.constFind(info.filePath()); old != m_entries.cend()) {
        m_cost -= old->file->cost;
        m_entries.erase(old);
    }
    if (!isSettled || m_cost + file->cost > highestCost)
        return;
    m_cost += file->cost;
    m_entries.insert(info.filePath(), { info.size(), modified, m_round, file });
}

void IcsFileCache::end()
{
    m_entries.removeIf([this](const QHash<QString, Entry>::iterator entry) {
        const bool isGone = entry->round != m_round;
        if (isGone)
            m_cost -= entry->file->cost;
        return isGone;
    });
}

} // namespace nimbarrow
