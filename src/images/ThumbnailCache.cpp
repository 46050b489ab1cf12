#include "images/ThumbnailCache.h"

namespace nimbarrow {

QImage ThumbnailCache::find(const QString& path, int maxPixel) const
{
    const auto* const image = m_images.object({ path, maxPixel });
    return image ? *image : QImage();
}

void ThumbnailCache::insert(const QString& path, int maxPixel, const QImage& image)
{
    m_images.insert({ path, maxPixel }, new QImage(image), qsizetype { image.width() } * image.height() * 4);
    if (m_images.count() <= maxEntries)
        return;
    // Room for one less, and the one that was used least lately is gone.
    m_images.setMaxCost(m_images.totalCost() - 1);
    m_images.setMaxCost(maxCost);
}

void ThumbnailCache::remove(const QString& path)
{
    for (const auto& key : m_images.keys()) {
        if (key.first == path)
            m_images.remove(key);
    }
}

} // namespace nimbarrow
