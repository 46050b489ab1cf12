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
    [[nodiscard]] QImage find(const QString& path, int maxPixel) const;
    /// A picture that is larger than the limit alone is not kept.
    void insert(const QString& path, int maxPixel, const QImage& image);
    /// Every size of a file.
    void remove(const QString& path);
    void clear() { m_images.clear(); }

private:
    QCache<std::pair<QString, int>, QImage> m_images { maxCost };
};

} // namespace nimbarrow
