#include "clipboard/HistoryModel.h"

#include <QCryptographicHash>
#include <QFile>

using namespace Qt::StringLiterals;

namespace nimbarrow {

using Kind = ClipboardItem::Kind;

void HistoryModel::add(const ClipboardItem& item)
{
    if (promote(*item.contentHash, item.createdAt))
        return;
    items.prepend(item);
    ++inserted;
    isChanged = true;
    enforceLimit();
}

bool HistoryModel::promote(const QString& contentHash, const QDateTime& now)
{
    for (qsizetype row = 0; row < items.size(); ++row) {
        if (items.at(row).contentHash != contentHash)
            continue;
        promote(row, now);
        return true;
    }
    return false;
}

void HistoryModel::promote(qsizetype row, const QDateTime& now)
{
    items.move(row, 0);
    items.first().createdAt = now;
    isChanged = true;
}

void HistoryModel::togglePin(qsizetype row)
{
    items[row].pinned = !items.at(row).pinned;
    isChanged = true;
}

void HistoryModel::remove(qsizetype row)
{
    items.removeAt(row);
    isChanged = true;
}

void HistoryModel::clear()
{
    if (items.removeIf([](const auto& item) { return !item.pinned; }) > 0)
        isChanged = true;
}

void HistoryModel::enforceLimit()
{
    auto unpinned = 0;
    for (qsizetype row = 0; row < items.size();) {
        if (!items.at(row).pinned && ++unpinned > limit)
            remove(row);
        else
            ++row;
    }
}

QList<ClipboardItem> HistoryModel::displayed(bool images) const
{
    QList<ClipboardItem> rows;
    for (const auto& item : items) {
        if ((item.kind == Kind::Image) != images)
            continue;
        qsizetype place = 0;
        while (place < rows.size()
            && (rows.at(place).pinned == item.pinned ? rows.at(place).createdAt >= item.createdAt
                                                     : rows.at(place).pinned))
            ++place;
        rows.insert(place, item);
    }
    return rows;
}

QList<ClipboardItem> HistoryModel::inWholeSeconds(QList<ClipboardItem> items)
{
    for (auto& item : items)
        item.createdAt = item.createdAt.addMSecs(-item.createdAt.time().msec());
    return items;
}

QList<ClipboardItem> HistoryModel::loaded(QList<ClipboardItem> saved)
{
    saved.removeIf([](const auto& item) { return item.imagePath && !QFile::exists(*item.imagePath); });
    return inWholeSeconds(saved);
}

ClipboardItem HistoryModel::text(const QString& text)
{
    ClipboardItem item;
    item.kind = text.contains("://"_L1) ? Kind::Link : Kind::Text;
    item.text = item.kind == Kind::Link ? text.trimmed() : text.left(20'000);
    item.contentHash = hash(text.trimmed().toUtf8());
    return item;
}

ClipboardItem HistoryModel::files(const QStringList& paths)
{
    ClipboardItem item;
    item.contentHash = hash(paths.join(u'\n').toUtf8());
    if (paths.size() == 1 && paths.first().endsWith(".png"_L1)) {
        item.kind = Kind::Image;
        item.imagePath = paths.first();
    } else {
        item.kind = Kind::Files;
        item.filePaths = paths;
    }
    return item;
}

ClipboardItem HistoryModel::image(const QByteArray& data)
{
    ClipboardItem item;
    item.kind = Kind::Image;
    item.contentHash = hash(data);
    return item;
}

ClipboardItem HistoryModel::screenshot(const QString& path)
{
    ClipboardItem item;
    item.kind = Kind::Image;
    item.imagePath = path;
    item.contentHash = "file:"_L1 + path;
    item.sourceApp = u"Screenshot"_s;
    item.isScreenshot = true;
    return item;
}

QString HistoryModel::hash(const QByteArray& data)
{
    return QString::fromLatin1(QCryptographicHash::hash(data, QCryptographicHash::Sha256).toHex());
}

} // namespace nimbarrow
