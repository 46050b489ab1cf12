#pragma once

#include "clipboard/ClipboardItem.h"

#include <QList>
#include <QStringList>

namespace nimbarrow {

/// What the history has to be, in its simplest form: one list that is looked through from its start. Knows
/// nothing of files and queues.
class HistoryModel {
public:
    QList<ClipboardItem> items;
    qint64 limit = 10;
    /// How many entries there ever were.
    int inserted = 0;
    /// Whether something has changed that is to be saved.
    bool isChanged = false;

    /// Promotes the entry of the same content, or puts this one on top.
    void add(const ClipboardItem& item);
    /// Whether the content was there, and is on top now.
    bool promote(const QString& contentHash, const QDateTime& now);
    void promote(qsizetype row, const QDateTime& now);
    void togglePin(qsizetype row);
    void remove(qsizetype row);
    void clear();
    void enforceLimit();

    [[nodiscard]] QList<ClipboardItem> displayed(bool images) const;
    /// As the index keeps them.
    [[nodiscard]] static QList<ClipboardItem> inWholeSeconds(QList<ClipboardItem> items);
    /// As they come back at the next start: no entry stays without its image.
    [[nodiscard]] static QList<ClipboardItem> loaded(QList<ClipboardItem> saved);

    [[nodiscard]] static ClipboardItem text(const QString& text);
    [[nodiscard]] static ClipboardItem files(const QStringList& paths);
    [[nodiscard]] static ClipboardItem image(const QByteArray& data);
    [[nodiscard]] static ClipboardItem screenshot(const QString& path);
    [[nodiscard]] static QString hash(const QByteArray& data);
};

} // namespace nimbarrow
