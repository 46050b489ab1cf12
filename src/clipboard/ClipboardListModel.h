#pragma once

#include "clipboard/ClipboardItem.h"

#include <QAbstractListModel>
#include <QSet>
#include <qqmlintegration.h>

namespace nimbarrow {

/// A part of the history in the order it is shown, as a list whose rows come, go and move.
class ClipboardListModel : public QAbstractListModel {
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("Made by the store")
    Q_PROPERTY(int count READ count NOTIFY countChanged FINAL)

public:
    enum Role {
        ItemIdRole = Qt::UserRole,
        SymbolRole,
        SummaryRole,
        KindLabelRole,
        /// "link", "text", "image" or "files".
        KindRole,
        PinnedRole,
        /// A file URL, or empty.
        ImageUrlRole,
        SourceAppRole,
        /// What the help text of the entry says: the summary and, for files, their names.
        HelpRole,
    };
    Q_ENUM(Role)

    using QAbstractListModel::QAbstractListModel;

    [[nodiscard]] int count() const { return static_cast<int>(m_items.size()); }
    [[nodiscard]] const QList<ClipboardItem>& items() const { return m_items; }

    /// The row of an entry, or -1.
    Q_INVOKABLE [[nodiscard]] int rowOf(const QUuid& id) const;

    /// The display order: pinned entries first, then the newest.
    [[nodiscard]] static bool isBefore(const ClipboardItem& one, const ClipboardItem& other);

    /// Brings an entry that has come to the top to its row, ahead of its equals: a new one, or one that is
    /// among the rows as it was `before`. For rows in the display order; costs little, however many they are.
    void put(const ClipboardItem& item, const ClipboardItem* before);
    /// Turns the rows into `items` by the fewest removes, moves and inserts that a simple walk finds.
    void setItems(const QList<ClipboardItem>& items);
    /// The texts of the interface have changed.
    void retranslate();

    [[nodiscard]] int rowCount(const QModelIndex& parent = {}) const override;
    [[nodiscard]] QVariant data(const QModelIndex& index, int role) const override;
    /// itemId, symbol, summary, kindLabel, kind, pinned, imageUrl, sourceApp, help.
    [[nodiscard]] QHash<int, QByteArray> roleNames() const override;

Q_SIGNALS:
    void countChanged();

private:
    /// The row that the entry has or would have, or the first one of its equals.
    [[nodiscard]] int firstNotBefore(const ClipboardItem& item) const;
    void removeGone(int first, int end, const QSet<QUuid>& stay);
    /// Brings the entry that `items` has at a row to it. Rows before it are settled; those from `end` on, and
    /// in `items` from `last` on, stay.
    void settleRow(int row, int last, int end, const QList<ClipboardItem>& items, const QSet<QUuid>& oldIds);
    void moveRow(int from, int target);
    void removeSpan(int begin, int end);

    QList<ClipboardItem> m_items;
};

} // namespace nimbarrow
