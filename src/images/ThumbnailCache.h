#pragma once

#include <QCache>
#include <QImage>
#include <QString>

#include <utility>

namespace nimbarrow {

/// Pictures by file and size, within two limits: what was used least lately goes first.
class ThumbnailCache {
public:
    static constexpr qsizetype maxEntries = 300;
    /// In bytes of pixels.
    static constexpr qsizetype maxCost = 209'715'200;

    /// Null when it is not there. Counts as a use.
    [[nodiscard]] QImage find(const QString& path, int maxPixel) const
    {
        const auto* const image = m_images.object({ path, maxPixel });
        return image ? *image : QImage();
    }

    /// A picture that is larger than the limit alone is not kept.
    void insert(const QString& path, int maxPixel, const QImage& image)
    {
        m_images.insert(
            { path, maxPixel }, new QImage(image), qsizetype { image.width() } * image.height() * 4);
        if (m_images.count() <= maxEntries)
            return;
        // Room for one less, and the one that was used least lately is gone.
        m_images.setMaxCost(m_images.totalCost() - 1);
        m_images.setMaxCost(maxCost);
    }

    /// Every size of a file.
    void remove(const QString& path)
    {
        for (const auto& key : m_images.keys()) {
            if (key.first == path)
                m_images.remove(key);
        }
    }

    void clear() { m_images.clear(); }

private:
    QCache<std::pair<QString, int>, QImage> m_images { maxCost };
};

} // namespace nimbarrow
