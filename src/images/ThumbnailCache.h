#pragma once

#include <QHash>
#include <QImage>
#include <QString>

#include <list>

namespace nimbarrow {

/// Pictures by file and size, within two limits: what was used least lately goes first.
class ThumbnailCache {
public:
    static constexpr qsizetype maxEntries = 300;
    /// In bytes of pixels.
    static constexpr qsizetype maxCost = 209'715'200;

    /// Null when it is not there. Counts as a use.
    [[nodiscard]] QImage find(const QString& path, int maxPixel);
    /// A picture that is larger than the limit alone is not kept.
    void insert(const QString& path, int maxPixel, const QImage& image);
    /// Every size of a file.
    void remove(const QString& path);

private:
    struct Entry {
        QString key;
        QString path;
        QImage image;
    };
    using Entries = std::list<Entry>;

    void erase(Entries::iterator entry);

    /// The latest used first.
    Entries m_entries;
    QHash<QString, Entries::iterator> m_places;
    qsizetype m_cost = 0;
};

} // namespace nimbarrow
