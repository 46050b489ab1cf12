#pragma once

#include "clipboard/ClipboardItem.h"

#include <QCryptographicHash>
#include <QFile>
#include <QList>
#include <QStringList>

#include <algorithm>
#include <functional>
#include <utility>

namespace nimbarrow {

/// What the history has to be, in its simplest form: one list that is looked through from its start. Knows
/// nothing of files and queues.
class HistoryModel {
    using Kind = ClipboardItem::Kind;

public:
    QList<ClipboardItem> items;
    qint64 limit = 10;
    /// How many entries there ever were.
    int inserted = 0;
    /// Whether something has changed that is to be saved.
    bool isChanged = false;

    /// Promotes the entry of the same content, or puts this one on top.
    void add(const ClipboardItem& item)
    {
        if (promote(*item.contentHash, item.createdAt))
            return;
        items.prepend(item);
        ++inserted;
        isChanged = true;
        enforceLimit();
    }

    /// Whether the content was there, and is on top now.
    bool promote(const QString& contentHash, const QDateTime& now)
    {
        for (qsizetype row = 0; row < items.size(); ++row) {
            if (items.at(row).contentHash != contentHash)
                continue;
            promote(row, now);
            return true;
        }
        return false;
    }

    void promote(qsizetype row, const QDateTime& now)
    {
        items.move(row, 0);
        items.first().createdAt = now;
        isChanged = true;
    }

    void togglePin(qsizetype row)
    {
        items[row].pinned = !items.at(row).pinned;
        isChanged = true;
    }

    void remove(qsizetype row)
    {
        items.removeAt(row);
        isChanged = true;
    }

    void clear()
    {
        if (items.removeIf([](const auto& item) { return !item.pinned; }) > 0)
            isChanged = true;
    }

    void enforceLimit()
    {
        auto unpinned = 0;
        for (qsizetype row = 0; row < items.size();) {
            if (!items.at(row).pinned && ++unpinned > limit)
                remove(row);
            else
                ++row;
        }
    }

    [[nodiscard]] QList<ClipboardItem> displayed(bool images) const
    {
        QList<ClipboardItem> rows;
        for (const auto& item : items) {
            if ((item.kind == Kind::Image) == images)
                rows << item;
        }
        std::ranges::stable_sort(
            rows, std::greater(), [](const auto& item) { return std::pair(item.pinned, item.createdAt); });
        return rows;
    }

    /// As the index keeps them.
    [[nodiscard]] static QList<ClipboardItem> inWholeSeconds(QList<ClipboardItem> items)
    {
        for (auto& item : items)
            item.createdAt = item.createdAt.addMSecs(-item.createdAt.time().msec());
        return items;
    }

    /// As they come back at the next start: no entry stays without its image.
    [[nodiscard]] static QList<ClipboardItem> loaded(QList<ClipboardItem> saved)
    {
        saved.removeIf([](const auto& item) { return item.imagePath && !QFile::exists(*item.imagePath); });
        return inWholeSeconds(saved);
    }

    [[nodiscard]] static ClipboardItem text(const QString& text)
    {
        ClipboardItem item;
        item.kind = text.contains(QLatin1StringView("://")) ? Kind::Link : Kind::Text;
        item.text = item.kind == Kind::Link ? text.trimmed() : text.left(20'000);
        item.contentHash = hash(text.trimmed().toUtf8());
        return item;
    }

    [[nodiscard]] static ClipboardItem files(const QStringList& paths)
    {
        ClipboardItem item;
        item.contentHash = hash(paths.join(u'\n').toUtf8());
        if (paths.size() == 1 && paths.first().endsWith(QLatin1StringView(".png"))) {
            item.kind = Kind::Image;
            item.imagePath = paths.first();
        } else {
            item.kind = Kind::Files;
            item.filePaths = paths;
        }
        return item;
    }

    [[nodiscard]] static ClipboardItem image(const QByteArray& data)
    {
        ClipboardItem item;
        item.kind = Kind::Image;
        item.contentHash = hash(data);
        return item;
    }

    [[nodiscard]] static ClipboardItem screenshot(const QString& path)
    {
        ClipboardItem item;
        item.kind = Kind::Image;
        item.imagePath = path;
        item.contentHash = QLatin1StringView("file:") + path;
        item.sourceApp = QStringLiteral("Screenshot");
        item.isScreenshot = true;
        return item;
    }

    [[nodiscard]] static QString hash(const QByteArray& data)
    {
        return QString::fromLatin1(QCryptographicHash::hash(data, QCryptographicHash::Sha256).toHex());
    }
};

} // namespace nimbarrow
