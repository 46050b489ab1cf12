#include "clipboard/ClipboardHistory.h"

#include "clipboard/ClipboardIndex.h"
#include "clipboard/ClipboardListModel.h"

#include <algorithm>
#include <utility>

namespace nimbarrow {

ClipboardHistory::ClipboardHistory(QList<ClipboardItem> items)
    : m_items(std::move(items))
{
    for (const auto& item : std::as_const(m_items))
        remember(item);
}

const ClipboardItem* ClipboardHistory::find(const QUuid& id) const
{
    const auto item = std::ranges::find(m_items, id, &ClipboardItem::id);
    return item == m_items.end() ? nullptr : &*item;
}

// Rows are shown by time, and the user's clock may have been set back since.
QList<ClipboardItem> ClipboardHistory::displayed(bool images) const
{
    QList<const ClipboardItem*> order;
    order.reserve(m_items.size());
    for (const auto pinned : { true, false }) {
        for (const auto& item : m_items) {
            if (item.pinned == pinned && (item.kind == ClipboardItem::Kind::Image) == images)
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

void ClipboardHistory::add(const ClipboardItem& item)
{
    m_items.prepend(item);
    remember(item);
}

std::optional<ClipboardItem> ClipboardHistory::promote(const QString& contentHash, const QDateTime& now)
{
    return promote(findContent(contentHash), now);
}

std::optional<ClipboardItem> ClipboardHistory::promote(const QUuid& id, const QDateTime& now)
{
    return promote(std::ranges::find(std::as_const(m_items), id, &ClipboardItem::id), now);
}

std::optional<ClipboardItem> ClipboardHistory::promote(Place place, const QDateTime& now)
{
    if (place == m_items.cend())
        return std::nullopt;
    const auto before = m_items.takeAt(place - m_items.cbegin());
    forget(before);
    auto item = before;
    item.createdAt = now;
    add(item);
    return before;
}

bool ClipboardHistory::replace(const ClipboardItem& item)
{
    const auto old = std::ranges::find(m_items, item.id, &ClipboardItem::id);
    if (old == m_items.end())
        return false;
    forget(*old);
    *old = item;
    remember(item);
    return true;
}

bool ClipboardHistory::togglePin(const QUuid& id)
{
    const auto item = std::ranges::find(m_items, id, &ClipboardItem::id);
    if (item == m_items.end()
        || (!item->pinned && pinnedBytes() + clipboardindex::encodedSize(*item) > maxPinnedBytes))
        return false;
    item->pinned = !item->pinned;
    return true;
}

QList<ClipboardItem> ClipboardHistory::remove(const QUuid& id)
{
    return removeIf([&id](const auto& item) { return item.id == id; });
}

QList<ClipboardItem> ClipboardHistory::removeUnpinned()
{
    return removeIf([](const auto& item) { return !item.pinned; });
}

QList<ClipboardItem> ClipboardHistory::removeOverflow(qint64 limit)
{
    if (m_items.size() <= limit && m_bytes <= maxBytes)
        return {};
    auto bytes = m_bytes > maxBytes ? pinnedBytes() : 0;
    const auto countsBytes = m_bytes > maxBytes;
    return removeIf([&](const auto& item) {
        if (item.pinned)
            return false;
        if (countsBytes)
            bytes += clipboardindex::encodedSize(item);
        return limit-- <= 0 || bytes > maxBytes;
    });
}

void ClipboardHistory::remember(const ClipboardItem& item)
{
    m_bytes += clipboardindex::encodedSize(item);
    if (item.contentHash)
        m_capturesByHash.insert(*item.contentHash, { item.id, item.createdAt });
}

void ClipboardHistory::forget(const ClipboardItem& item)
{
    m_bytes -= clipboardindex::encodedSize(item);
    if (item.contentHash)
        m_capturesByHash.remove(*item.contentHash, { item.id, item.createdAt });
}

ClipboardHistory::Place ClipboardHistory::findContent(const QString& contentHash) const
{
    const auto known = m_capturesByHash.count(contentHash);
    if (known == 0)
        return m_items.cend();
    // Of several, which only an index from elsewhere can have, the one that stands first.
    if (known > 1)
        return std::ranges::find(m_items, contentHash, &ClipboardItem::contentHash);
    // The newest stand first, unless the clock was set back.
    const auto capture = m_capturesByHash.value(contentHash);
    auto item = std::ranges::partition_point(
        m_items, [&capture](const ClipboardItem& other) { return other.createdAt > capture.at; });
    while (item != m_items.cend() && item->id != capture.id && item->createdAt == capture.at)
        ++item;
    return item != m_items.cend() && item->id == capture.id
        ? item
        : std::ranges::find(m_items, capture.id, &ClipboardItem::id);
}

qsizetype ClipboardHistory::pinnedBytes() const
{
    qsizetype bytes = 0;
    for (const auto& item : m_items)
        bytes += item.pinned ? clipboardindex::encodedSize(item) : 0;
    return bytes;
}

template <typename Predicate>
QList<ClipboardItem> ClipboardHistory::removeIf(Predicate predicate)
{
    QList<ClipboardItem> removed;
    m_items.removeIf([&](const auto& item) {
        if (!predicate(item))
            return false;
        removed << item;
        return true;
    });
    for (const auto& item : std::as_const(removed))
        forget(item);
    return removed;
}

} // namespace nimbarrow
