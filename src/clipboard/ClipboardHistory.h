#pragma once

#include "clipboard/ClipboardItem.h"

#include <QMultiHash>

namespace nimbarrow {

/// The entries of the history, newest capture first; pinned entries stand where their capture put them. Knows
/// nothing of disks, clocks and views.
class ClipboardHistory {
public:
    /// All entries together, in bytes of the index. Whatever is kept fits into an index that can be read.
    static constexpr qsizetype maxBytes = qsizetype { 32 } * 1024 * 1024;
    /// Pinned entries leave room for whatever is copied next.
    static constexpr qsizetype maxPinnedBytes = maxBytes / 2;

    ClipboardHistory() = default;
    explicit ClipboardHistory(QList<ClipboardItem> items);

    [[nodiscard]] const QList<ClipboardItem>& items() const { return m_items; }
    /// Null when there is none. Valid until the next change.
    [[nodiscard]] const ClipboardItem* find(const QUuid& id) const;
    /// Pinned entries first, then the newest: the images or everything else.
    [[nodiscard]] QList<ClipboardItem> displayed(bool images) const;

    /// Puts a new entry on top.
    void add(const ClipboardItem& item);
    /// Brings the entry with this content hash, or this identifier, to the top, captured `now`, and returns
    /// it as it was; none when there is none.
    std::optional<ClipboardItem> promote(const QString& contentHash, const QDateTime& now);
    std::optional<ClipboardItem> promote(const QUuid& id, const QDateTime& now);
    /// Puts an entry into the place of the one with its identifier. False when there is none.
    bool replace(const ClipboardItem& item);
    /// False when there is no such entry, or no room for one more pinned entry.
    bool togglePin(const QUuid& id);

    // Each returns what is no longer in the history.
    [[nodiscard]] QList<ClipboardItem> remove(const QUuid& id);
    [[nodiscard]] QList<ClipboardItem> removeUnpinned();
    /// The oldest entries that are not pinned, as many as are above `limit` entries or above `maxBytes`.
    [[nodiscard]] QList<ClipboardItem> removeOverflow(qint64 limit);

private:
    using Place = QList<ClipboardItem>::const_iterator;
    /// Which entry has some content, and when it was captured last.
    struct Capture {
        QUuid id;
        QDateTime at;
        friend bool operator==(const Capture&, const Capture&) = default;
    };

    void remember(const ClipboardItem& item);
    void forget(const ClipboardItem& item);
    [[nodiscard]] Place findContent(const QString& contentHash) const;
    std::optional<ClipboardItem> promote(Place place, const QDateTime& now);
    [[nodiscard]] qsizetype pinnedBytes() const;
    template <typename Predicate>
    QList<ClipboardItem> removeIf(Predicate predicate);

    QList<ClipboardItem> m_items;
    QMultiHash<QString, Capture> m_capturesByHash;
    qsizetype m_bytes = 0;
};

} // namespace nimbarrow
