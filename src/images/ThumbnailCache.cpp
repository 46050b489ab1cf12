#include "images/ThumbnailCache.h"

#include <iterator>

namespace nimbarrow {

namespace {

QString keyOf(const QString& path, int maxPixel)
{
    return QString::number(maxPixel) + u'|' + path;
}

qsizetype costOf(const QImage& image)
{
    return qsizetype { image.width() } * image.height() * 4;
}

} // namespace

QImage ThumbnailCache::find(const QString& path, int maxPixel)
{
    const auto place = m_places.constFind(keyOf(path, maxPixel));
    if (place == m_places.cend())
        return {};
    m_entries.splice(m_entries.begin(), m_entries, *place);
    return m_entries.front().image;
}

void ThumbnailCache::insert(const QString& path, int maxPixel, const QImage& image)
{
    const auto key = keyOf(path, maxPixel);
    if (const auto place = m_places.constFind(key); place != m_places.cend())
        erase(*place);
    if (costOf(image) > maxCost)
        return;
    m_entries.push_front({ key, path, image });
    m_places.insert(key, m_entries.begin());
    m_cost += costOf(image);
    while (m_cost > maxCost || m_places.size() > maxEntries)
        erase(std::prev(m_entries.end()));
}

void ThumbnailCache::remove(const QString& path)
{
    for (auto entry = m_entries.begin(); entry != m_entries.end();) {
        const auto next = std::next(entry);
        if (entry->path == path)
            erase(entry);
        entry = next;
    }
}

void ThumbnailCache::erase(Entries::iterator entry)
{
    m_cost -= costOf(entry->image);
    m_places.remove(entry->key);
    m_entries.erase(entry);
}

} // namespace nimbarrow
