#include "clipboard/ClipboardListModel.h"

#include "text/DisplayLine.h"

#include <QFileInfo>
#include <QSet>

#include <algorithm>
#include <utility>

using namespace Qt::StringLiterals;

namespace nimbarrow {

namespace {

// No row is this wide, and laying out a text costs by its length.
constexpr qsizetype maxLine = 400;
constexpr qsizetype maxNames = 12;

QString line(const ClipboardItem& item)
{
    return displayLine(item.summary().value_or(QString()), maxLine);
}

QString help(const ClipboardItem& item)
{
    QStringList lines { line(item) };
    const auto paths = item.filePaths.value_or(QStringList());
    if (paths.size() > 1) {
        for (const auto& path : paths.first(std::min(paths.size(), maxNames)))
            lines << displayLine(QFileInfo(path).fileName(), maxLine);
        if (paths.size() > maxNames)
            lines << u"…"_s;
    }
    return lines.join(u'\n');
}

template <typename Iterator>
QSet<QUuid> ids(Iterator begin, Iterator end)
{
    QSet<QUuid> ids;
    for (; begin != end; ++begin)
        ids.insert(begin->id);
    return ids;
}

bool sameId(const ClipboardItem& one, const ClipboardItem& other)
{
    return one.id == other.id;
}

} // namespace

int ClipboardListModel::rowOf(const QUuid& id) const
{
    const auto row = std::ranges::find(m_items, id, &ClipboardItem::id);
    return row == m_items.end() ? -1 : static_cast<int>(row - m_items.begin());
}

bool ClipboardListModel::isBefore(const ClipboardItem& one, const ClipboardItem& other)
{
    return one.pinned != other.pinned ? one.pinned : one.createdAt > other.createdAt;
}

void ClipboardListModel::put(const ClipboardItem& item, const ClipboardItem* before)
{
    const auto place = firstNotBefore(item);
    auto from = before ? firstNotBefore(*before) : count();
    while (from < count() && !sameId(m_items.at(from), item))
        ++from;
    if (from == count()) {
        beginInsertRows({}, place, place);
        m_items.insert(place, item);
        endInsertRows();
        Q_EMIT countChanged();
        return;
    }
    const auto row = place > from ? place - 1 : place;
    if (row != from)
        moveRow(from, row);
    m_items[row] = item;
    Q_EMIT dataChanged(index(row), index(row));
}

int ClipboardListModel::firstNotBefore(const ClipboardItem& item) const
{
    const auto found = std::ranges::partition_point(
        m_items, [&item](const ClipboardItem& row) { return isBefore(row, item); });
    return static_cast<int>(found - m_items.begin());
}

void ClipboardListModel::setItems(const QList<ClipboardItem>& items)
{
    const auto before = count();
    // Most changes touch few rows of many, so what is alike at both ends is left out first.
    const auto head = std::mismatch(m_items.cbegin(), m_items.cend(), items.cbegin(), items.cend(), sameId);
    const auto tail = std::mismatch(m_items.crbegin(), std::reverse_iterator(head.first), items.crbegin(),
        std::reverse_iterator(head.second), sameId);
    const auto first = static_cast<int>(head.first - m_items.cbegin());
    const auto keptBehind = static_cast<int>(tail.first - m_items.crbegin());
    const auto oldIds = ids(head.first, tail.first.base());
    const auto newIds = ids(head.second, tail.second.base());

    removeGone(first, count() - keptBehind, newIds);
    const auto last = static_cast<int>(items.size()) - keptBehind;
    for (auto row = first; row < last; ++row)
        settleRow(row, last, count() - keptBehind, items, oldIds);
    // Only a list that names an entry twice leaves rows over.
    if (const auto over = count() - keptBehind; over > last)
        removeSpan(last, over);

    for (auto row = 0; row < count(); ++row) {
        if (m_items.at(row) == items.at(row))
            continue;
        m_items[row] = items.at(row);
        Q_EMIT dataChanged(index(row), index(row));
    }
    if (count() != before)
        Q_EMIT countChanged();
}

void ClipboardListModel::removeGone(int first, int end, const QSet<QUuid>& stay)
{
    for (auto spanEnd = end; spanEnd > first;) {
        auto begin = spanEnd;
        while (begin > first && !stay.contains(m_items.at(begin - 1).id))
            --begin;
        if (begin < spanEnd)
            removeSpan(begin, spanEnd);
        spanEnd = begin - 1;
    }
}

void ClipboardListModel::settleRow(
    int row, int last, int end, const QList<ClipboardItem>& items, const QSet<QUuid>& oldIds)
{
    const auto& wanted = items.at(row);
    if (row < end && sameId(m_items.at(row), wanted))
        return;
    const auto found = oldIds.contains(wanted.id)
        ? std::find_if(m_items.cbegin() + row, m_items.cbegin() + end,
            [&wanted](const auto& item) { return sameId(item, wanted); })
        : m_items.cbegin() + end;
    const auto from = static_cast<int>(found - m_items.cbegin());
    if (from == end) {
        beginInsertRows({}, row, row);
        m_items.insert(row, wanted);
        endInsertRows();
    } else if (from == row + 1) {
        // The rows behind have moved up because this one goes down.
        const auto place = std::find_if(items.cbegin() + row, items.cbegin() + last,
            [this, row](const auto& item) { return sameId(item, m_items.at(row)); });
        moveRow(row, std::min(static_cast<int>(place - items.cbegin()), end - 1));
    } else {
        moveRow(from, row);
    }
}

void ClipboardListModel::moveRow(int from, int target)
{
    beginMoveRows({}, from, from, {}, target > from ? target + 1 : target);
    m_items.insert(target, m_items.takeAt(from));
    endMoveRows();
}

void ClipboardListModel::removeSpan(int begin, int end)
{
    beginRemoveRows({}, begin, end - 1);
    m_items.remove(begin, end - begin);
    endRemoveRows();
}

void ClipboardListModel::retranslate()
{
    if (!m_items.isEmpty())
        Q_EMIT dataChanged(index(0), index(count() - 1), { SummaryRole, KindLabelRole, HelpRole });
}

int ClipboardListModel::rowCount(const QModelIndex& parent) const
{
    return parent.isValid() ? 0 : count();
}

QVariant ClipboardListModel::data(const QModelIndex& index, int role) const
{
    if (!checkIndex(index, CheckIndexOption::IndexIsValid | CheckIndexOption::ParentIsInvalid))
        return {};
    const auto& item = m_items.at(index.row());
    switch (role) {
    case ItemIdRole: return item.id;
    case SymbolRole: return item.symbol();
    case Qt::DisplayRole:
    case SummaryRole: return line(item);
    case KindLabelRole: return item.kindLabel();
    case KindRole: return rawValue(item.kind);
    case PinnedRole: return item.pinned;
    case ImageUrlRole: return item.imagePath ? QUrl::fromLocalFile(*item.imagePath) : QUrl();
    case SourceAppRole: return item.sourceApp.value_or(QString());
    case HelpRole: return help(item);
    default: return {};
    }
}

QHash<int, QByteArray> ClipboardListModel::roleNames() const
{
    return {
        { ItemIdRole, "itemId" },
        { SymbolRole, "symbol" },
        { SummaryRole, "summary" },
        { KindLabelRole, "kindLabel" },
        { KindRole, "kind" },
        { PinnedRole, "pinned" },
        { ImageUrlRole, "imageUrl" },
        { SourceAppRole, "sourceApp" },
        { HelpRole, "help" },
    };
}

} // namespace nimbarrow
